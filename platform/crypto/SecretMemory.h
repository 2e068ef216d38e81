#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string.h>
#include <string>
#include <vector>

namespace MirrowvaleAuthenticator {

/// Overwrites `count` bytes in a way that no optimiser removes.
inline void wipe(void* memory, std::size_t count) noexcept
{
    explicit_bzero(memory, count);
}

/// An allocator that overwrites memory before it gives it back.
template <typename T>
struct WipingAllocator {
    using value_type = T;

    WipingAllocator() = default;
    template <typename U>
    WipingAllocator(const WipingAllocator<U>&) noexcept
    {
    }

    T* allocate(std::size_t count) { return std::allocator<T>().allocate(count); }
    void deallocate(T* memory, std::size_t count) noexcept
    {
        wipe(memory, count * sizeof(T));
        std::allocator<T>().deallocate(memory, count);
    }

    template <typename U>
    friend bool operator==(const WipingAllocator&, const WipingAllocator<U>&) noexcept
    {
        return true;
    }
};

/// Text (UTF-8) or bytes that hold secrets. Up to 15 bytes live inside the object, which is not wiped:
/// for the stored list, never for a bare key.
using SecretString = std::basic_string<char, std::char_traits<char>, WipingAllocator<char>>;

/// Bytes that hold a secret, wiped wherever they leave memory.
using SecretBytes = std::vector<std::uint8_t, WipingAllocator<std::uint8_t>>;

} // namespace MirrowvaleAuthenticator
