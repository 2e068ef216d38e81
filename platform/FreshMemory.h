#pragma once

#include <cstddef>

/// Memory that the system has not given yet. Each page of it interrupts the program where it is first
/// touched, on a virtual machine for longer than most work on it takes; many that are asked for at once do
/// not.
namespace MirrowvaleAuthenticator {

/// Has the system give the pages that `size` bytes lie in, where it can. What they hold stays as it is.
void bringIn(void* memory, std::size_t size) noexcept;

/// Brings in the first `size` bytes of a heap that all threads share and that blocks of up to that size come
/// from.
void prepareHeap(std::size_t size);

} // namespace MirrowvaleAuthenticator
