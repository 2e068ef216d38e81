#include "platform/FreshMemory.h"

#include <cstdint>
#include <malloc.h>
#include <memory>
#include <sys/mman.h>
#include <unistd.h>

namespace MirrowvaleAuthenticator {

void bringIn([[maybe_unused]] void* memory, [[maybe_unused]] std::size_t size) noexcept
{
#ifdef MADV_POPULATE_WRITE
    static const auto pageSize = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
    const auto before = reinterpret_cast<std::uintptr_t>(memory) % pageSize;
    madvise(static_cast<char*>(memory) - before, before + size, MADV_POPULATE_WRITE);
#endif
}

void prepareHeap(std::size_t size)
{
    constexpr std::size_t bookkeeping = 64; // of the C library, for a block
    mallopt(M_ARENA_MAX, 1);
    // The C library would map a large block apart and soon give it back; what is free at the heap's end, too.
    mallopt(M_MMAP_THRESHOLD, static_cast<int>(size + bookkeeping));
    mallopt(M_TRIM_THRESHOLD, static_cast<int>(2 * size));
    const auto block = std::make_unique_for_overwrite<std::byte[]>(size);
    bringIn(block.get(), size);
}

} // namespace MirrowvaleAuthenticator
