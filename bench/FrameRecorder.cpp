// Preloaded into a program that draws with the software renderer: writes a record of each frame, once it has
// been handed to the window system, to the descriptor that MIRROWVALE_BENCH_FRAMES names.

#include <QBackingStore>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <dlfcn.h>
#include <unistd.h>

namespace {

std::int64_t nanoseconds(clockid_t clock)
{
    timespec time{};
    clock_gettime(clock, &time);
    return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

int descriptor()
{
    const char* name = std::getenv("MIRROWVALE_BENCH_FRAMES");
    return name == nullptr ? -1 : std::atoi(name);
}

/// The instant, and the processor time that the process has used by then; nanoseconds.
void recordFrame()
{
    static const int pipe = descriptor();
    const std::array<std::int64_t, 2> record{nanoseconds(CLOCK_MONOTONIC),
                                             nanoseconds(CLOCK_PROCESS_CPUTIME_ID)};
    if (pipe >= 0 && ::write(pipe, record.data(), sizeof record) < 0) {
        std::abort(); // a gap would pass for a long frame
    }
}

constexpr auto flushName = "_ZN13QBackingStore5flushERK7QRegionP7QWindowRK6QPoint";

} // namespace

void QBackingStore::flush(const QRegion& region, QWindow* window, const QPoint& offset)
{
    using Flush = void (*)(QBackingStore*, const QRegion&, QWindow*, const QPoint&);
    static const auto original = reinterpret_cast<Flush>(dlsym(RTLD_NEXT, flushName));
    original(this, region, window, offset);
    recordFrame();
}
