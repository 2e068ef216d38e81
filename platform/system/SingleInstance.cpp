#include "platform/system/SingleInstance.h"

#include "platform/system/PrivateFolder.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <stdexcept>
#include <sys/epoll.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <system_error>
#include <thread>

namespace MirrowvaleAuthenticator {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr auto lockName = "instance.lock";
constexpr auto socketName = "instance.socket";
constexpr milliseconds pause{20};

milliseconds restUntil(steady_clock::time_point deadline)
{
    return std::chrono::duration_cast<milliseconds>(deadline - steady_clock::now());
}

/// The folder of the stored list, made where there is none.
FileDescriptor openFolder()
{
    try {
        PrivateFolder::openOrCreate(dataFolderPath());
    } catch (const std::system_error&) { // NOLINT(bugprone-empty-catch): it may still be lockable
    }
    FileDescriptor folder(open(dataFolderPath().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    struct stat status { };
    // Another user's is not locked: that user could keep this one out.
    const bool isOwn = folder && fstat(folder.get(), &status) == 0 && status.st_uid == geteuid();
    return isOwn ? std::move(folder) : FileDescriptor();
}

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
    const bool isBound = listener
        && withAddress(folder, [&](auto... socketAddress) { return bind(listener.get(), socketAddress...); });
    return isBound && listen(listener.get(), 8) == 0 ? std::move(listener) : FileDescriptor();
}

bool isReady(int descriptor, short events, milliseconds timeout)
{
    pollfd polled{descriptor, events, 0};
    return poll(&polled, 1, std::max(0, static_cast<int>(timeout.count()))) == 1;
}

/// Connects to the socket in the folder; the first may not listen yet, or have as many waiting as it can.
FileDescriptor connectTo(int folder, steady_clock::time_point deadline)
{
    FileDescriptor connection(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    while (!withAddress(folder,
                        [&](auto... socketAddress) { return connect(connection.get(), socketAddress...); })) {
        if (!connection || steady_clock::now() > deadline) {
            return {};
        }
        std::this_thread::sleep_for(pause);
    }
    return connection;
}

bool askListener(int folder, std::string_view activationToken, steady_clock::time_point deadline)
{
    const auto connection = connectTo(folder, deadline);
    if (!connection) {
        return false;
    }
    const auto sent = send(connection.get(), activationToken.data(), activationToken.size(), MSG_NOSIGNAL);
    shutdown(connection.get(), SHUT_WR);
    // The first closes the connection once it has taken the request.
    return sent == static_cast<ssize_t>(activationToken.size())
        && isReady(connection.get(), POLLIN | POLLHUP, restUntil(deadline));
}

FileDescriptor acceptFrom(const FileDescriptor& listener)
{
    return FileDescriptor(accept4(listener.get(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
}

/// What was sent, its first 4096 bytes at least; nothing where the sender is too slow: it then asks again.
std::optional<std::string> receiveToken(int connection)
{
    std::string token;
    std::array<char, 512> piece{};
    constexpr milliseconds timeout{100}; // the sender writes at once
    while (token.size() < 4096) {
        const auto count =
            isReady(connection, POLLIN, timeout) ? recv(connection, piece.data(), piece.size(), 0) : -1;
        if (count < 0) {
            return std::nullopt;
        }
        if (count == 0) {
            break;
        }
        token.append(piece.data(), static_cast<std::size_t>(count));
    }
    return token;
}

} // namespace

SingleInstance::SingleInstance()
{
    if (name_.isTaken()) {
        return;
    }
    lockFolder();
    if (!isSecond()) {
        waiting_ = FileDescriptor(epoll_create1(EPOLL_CLOEXEC));
        waitFor(name_.descriptor());
        waitFor(listener_.get());
    }
}

SingleInstance::~SingleInstance()
{
    if (listener_) {
        unlinkat(folder_.get(), socketName, 0);
    }
}

void SingleInstance::lockFolder()
{
    folder_ = openFolder();
    if (!folder_) {
        return;
    }
    // The folder itself, as anything may lie in the place of a file in it; and a file, as network file
    // systems lock only what is open for writing.
    lock_ = FileDescriptor(
        openat(folder_.get(), lockName, O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0600));
    for (const auto* place : {&folder_, &lock_}) {
        const bool isRefused = *place && flock(place->get(), LOCK_EX | LOCK_NB) != 0;
        lockedByOther_ = lockedByOther_ || (isRefused && errno == EWOULDBLOCK);
    }
    if (!lockedByOther_) {
        listener_ = listenIn(folder_.get());
    }
}

void SingleInstance::waitFor(int descriptor)
{
    epoll_event readable{};
    readable.events = EPOLLIN;
    if (descriptor >= 0) {
        epoll_ctl(waiting_.get(), EPOLL_CTL_ADD, descriptor, &readable);
    }
}

bool SingleInstance::activateFirst(const std::string& activationToken,
                                   std::chrono::milliseconds timeout) const
{
    return name_.isTaken() ? name_.activateOwner(activationToken, timeout)
                           : askListener(folder_.get(), activationToken, steady_clock::now() + timeout);
}

std::optional<std::string> SingleInstance::takeActivation()
{
    auto token = name_.takeActivation();
    while (const auto connection = acceptFrom(listener_)) {
        if (auto received = receiveToken(connection.get())) {
            token = std::move(received);
        }
    }
    return token;
}

std::unique_ptr<SingleInstance> becomeOnlyInstance(const std::string& activationToken, milliseconds timeout)
{
    const auto deadline = steady_clock::now() + timeout;
    do {
        auto instance = std::make_unique<SingleInstance>();
        if (!instance->isSecond()) {
            return instance;
        }
        if (instance->activateFirst(activationToken, restUntil(deadline))) {
            return nullptr;
        }
        instance = nullptr;
        std::this_thread::sleep_for(pause); // the first may be ending
    } while (steady_clock::now() < deadline);
    throw std::runtime_error("The window that is open already does not answer.");
}

} // namespace MirrowvaleAuthenticator
