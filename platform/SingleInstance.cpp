#include "platform/SingleInstance.h"

#include "platform/PrivateFolder.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <optional>
#include <poll.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <system_error>
#include <thread>

namespace MirrowvaleAuthenticator {

namespace {

constexpr auto lockName = "instance.lock";
constexpr auto socketName = "instance.socket";
constexpr std::chrono::milliseconds patience{3000};

/// The socket's address by way of the open folder: a path of its own may be longer than an address holds.
sockaddr_un address(int folder)
{
    sockaddr_un result{};
    result.sun_family = AF_UNIX;
    const auto path = "/proc/self/fd/" + std::to_string(folder) + "/" + socketName;
    std::memcpy(result.sun_path, path.c_str(), path.size() + 1);
    return result;
}

template <typename Call>
bool withAddress(int folder, Call call)
{
    const auto socketAddress = address(folder);
    return call(reinterpret_cast<const sockaddr*>(&socketAddress),
                static_cast<socklen_t>(sizeof socketAddress))
        == 0;
}

FileDescriptor listenIn(int folder)
{
    FileDescriptor listener(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    unlinkat(folder, socketName, 0); // left by a process that ended without a chance to remove it
    const bool isBound =
        listener && withAddress(folder, [&](auto... of) { return bind(listener.get(), of...); });
    return isBound && listen(listener.get(), 8) == 0 ? std::move(listener) : FileDescriptor();
}

bool isReady(int descriptor, short events, std::chrono::milliseconds timeout)
{
    pollfd waiting{descriptor, events, 0};
    return poll(&waiting, 1, static_cast<int>(timeout.count())) == 1;
}

} // namespace

SingleInstance::SingleInstance()
{
    try {
        const auto privateFolder = PrivateFolder::openOrCreate(dataFolderPath());
        folder = FileDescriptor(fcntl(privateFolder.descriptor(), F_DUPFD_CLOEXEC, 0));
    } catch (const std::system_error&) {
        return;
    }
    lock = FileDescriptor(openat(folder.get(), lockName, O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600));
    if (!lock) {
        return;
    }
    if (flock(lock.get(), LOCK_EX | LOCK_NB) == 0) {
        listener = listenIn(folder.get());
    } else {
        second = errno == EWOULDBLOCK;
    }
}

SingleInstance::~SingleInstance()
{
    if (listener) {
        unlinkat(folder.get(), socketName, 0);
    }
}

bool SingleInstance::activateFirst(std::string_view activationToken) const
{
    const auto deadline = std::chrono::steady_clock::now() + patience;
    const FileDescriptor connection(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    // The first may hold the lock and not listen yet.
    while (!withAddress(folder.get(), [&](auto... of) { return connect(connection.get(), of...); })) {
        if (std::chrono::steady_clock::now() > deadline) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    const auto sent = send(connection.get(), activationToken.data(), activationToken.size(), MSG_NOSIGNAL);
    shutdown(connection.get(), SHUT_WR);
    // The first closes the connection once it has taken the request.
    return sent == static_cast<ssize_t>(activationToken.size())
        && isReady(connection.get(), POLLIN | POLLHUP, patience);
}

std::string SingleInstance::takeActivation() const
{
    const FileDescriptor connection(accept4(listener.get(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
    std::string token;
    std::array<char, 512> piece{};
    constexpr std::chrono::milliseconds blink{100}; // the sender has nothing to wait for
    while (connection && token.size() < 4096 && isReady(connection.get(), POLLIN, blink)) {
        const auto count = recv(connection.get(), piece.data(), piece.size(), 0);
        if (count <= 0) {
            break;
        }
        token.append(piece.data(), static_cast<std::size_t>(count));
    }
    return token;
}

} // namespace MirrowvaleAuthenticator
