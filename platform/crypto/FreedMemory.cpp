#include "platform/crypto/SecretMemory.h"

#include <algorithm>
#include <cstring>
#include <malloc.h>

// Linked into a program, these stand in the place of the C library's: whatever memory the program and its
// libraries give back is overwritten first. What a person types passes through copies of the toolkit that
// nothing else reaches.

extern "C" {

// The C library's own, under the name that it keeps for such a replacement.
void __libc_free(void* memory) noexcept; // NOLINT(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)

void free(void* memory) noexcept
{
    if (memory != nullptr) {
        MirrowvaleAuthenticator::wipe(memory, malloc_usable_size(memory));
        __libc_free(memory);
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
