#pragma once

#include <unistd.h>
#include <utility>

namespace MirrowvaleAuthenticator {

/// Owns one open file descriptor, or none (-1).
class FileDescriptor {
public:
    FileDescriptor() = default;
    explicit FileDescriptor(int owned) : descriptor(owned) { }
    FileDescriptor(FileDescriptor&& other) noexcept : descriptor(std::exchange(other.descriptor, -1)) { }
    FileDescriptor& operator=(FileDescriptor&& other) noexcept
    {
        std::swap(descriptor, other.descriptor);
        return *this;
    }
    ~FileDescriptor()
    {
        if (descriptor >= 0) {
            close(descriptor);
        }
    }

    int get() const { return descriptor; }
    explicit operator bool() const { return descriptor >= 0; }

private:
    int descriptor = -1;
};

} // namespace MirrowvaleAuthenticator
