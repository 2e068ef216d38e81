#include "platform/crypto/SecretMemory.h"

#include <algorithm>
#include <cstring>
#include <dlfcn.h>
#include <malloc.h>

// Linked into a program, these stand in the place of the C library's: whatever memory the program and its
// libraries give back is overwritten first. What a person types passes through copies of the toolkit that
// nothing else reaches.

extern "C" {

// The C library's own, under the name that it keeps for such a replacement.
void __libc_free(void* memory) noexcept; // NOLINT(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)
}

namespace {

using Free = void (*)(void*);

/// The next allocator's: another than the C library's may be preloaded, whose memory this is then.
Free freeNext = __libc_free;

void findNext()
{
    if (void* found = dlsym(RTLD_NEXT, "free")) {
        freeNext = reinterpret_cast<Free>(found);
    }
}

/// Runs before any library's constructor, not at the first free(): dlsym() may itself call free() in the
/// midst of its work, and cannot be called again there.
[[gnu::section(".preinit_array"), gnu::used]] void (*const findNextAtStart)() = findNext;

} // namespace

extern "C" {

void free(void* memory) noexcept
{
    if (memory != nullptr) {
        MirrowvaleAuthenticator::wipe(memory, malloc_usable_size(memory));
        freeNext(memory);
    }
}

void* realloc(void* memory, std::size_t size) noexcept
{
    if (memory == nullptr) {
        return malloc(size);
    }
    if (size == 0) {
        free(memory);
        return nullptr;
    }
    const std::size_t available = malloc_usable_size(memory);
    if (size <= available && size >= available / 2) {
        return memory;
    }
    void* moved = malloc(size);
    if (moved != nullptr) {
        std::memcpy(moved, memory, std::min(size, available));
        free(memory);
    }
    return moved;
}
}
