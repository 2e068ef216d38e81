// Preloaded into a program that draws with the toolkit: records each frame.

#include "bench/FrameRecord.h"

#include <QBackingStore>

#include <dlfcn.h>

namespace {

constexpr auto flushName = "_ZN13QBackingStore5flushERK7QRegionP7QWindowRK6QPoint";

} // namespace

void QBackingStore::flush(const QRegion& region, QWindow* window, const QPoint& offset)
{
    using Flush = void (*)(QBackingStore*, const QRegion&, QWindow*, const QPoint&);
    static const auto original = reinterpret_cast<Flush>(dlsym(RTLD_NEXT, flushName));
    original(this, region, window, offset);
    MirrowvaleAuthenticator::recordFrame();
}

// What the toolkit calls where it draws by OpenGL on X.
extern "C" void glXSwapBuffers(void* display, unsigned long drawable)
{
    using Swap = void (*)(void*, unsigned long);
    static const auto original = reinterpret_cast<Swap>(dlsym(RTLD_NEXT, "glXSwapBuffers"));
    original(display, drawable);
    MirrowvaleAuthenticator::recordFrame();
}
