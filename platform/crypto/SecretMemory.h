#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <ranges>
#include <string.h>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace MirrowvaleAuthenticator {

/// Overwrites `count` bytes in a way that no optimiser removes.
inline void wipe(void* memory, std::size_t count) noexcept
{
    explicit_bzero(memory, count);
}

/// Holds a plain value, an array or a text that is overwritten when it goes, however its scope ends.
template <typename T>
class Wiped {
public:
    Wiped() = default; ///< a plain value is not initialised
    explicit Wiped(T value) : value_(std::move(value)) { }
    ~Wiped()
    {
        if constexpr (requires { value_.resize(value_.capacity()); }) {
            value_.resize(value_.capacity()); // it may have held more
        }
        if constexpr (std::ranges::contiguous_range<T>) {
            wipe(std::ranges::data(value_),
                 std::ranges::size(value_) * sizeof(std::ranges::range_value_t<T>));
        } else {
            static_assert(std::is_trivially_copyable_v<T>);
            wipe(&value_, sizeof value_);
        }
    }
    Wiped(const Wiped&) = delete;
    Wiped& operator=(const Wiped&) = delete;

    T& operator*() { return value_; }
    const T& operator*() const { return value_; }
    T* operator->() { return &value_; }
    const T* operator->() const { return &value_; }

private:
    T value_;
};

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
