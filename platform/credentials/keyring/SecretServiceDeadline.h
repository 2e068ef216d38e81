#pragma once

#include <chrono>
#include <condition_variable>
#include <gio/gio.h>
#include <mutex>
#include <thread>

namespace MirrowvaleAuthenticator {

/// Limits how long one operation on the keyring waits for answers: its calls are cancelled once 4 seconds
/// have passed in which no prompt was shown. A service may be stopped, or never answer; its library would
/// wait for 25 seconds at each call.
class SecretServiceDeadline {
public:
    SecretServiceDeadline();
    ~SecretServiceDeadline();
    SecretServiceDeadline(const SecretServiceDeadline&) = delete;
    SecretServiceDeadline& operator=(const SecretServiceDeadline&) = delete;

    /// For each call of the operation that waits for an answer.
    GCancellable* cancellable() const { return cancellable_; }
    bool hasPassed() const { return g_cancellable_is_cancelled(cancellable_) != FALSE; }

    /// The user is being asked: as long as this lives, the time of the operation at hand does not count.
    class Pause {
    public:
        Pause();
        ~Pause();
        Pause(const Pause&) = delete;
        Pause& operator=(const Pause&) = delete;

    private:
        std::chrono::steady_clock::duration remaining_{};
    };

private:
    void watch(const std::stop_token& stop);
    void setEnd(std::chrono::steady_clock::time_point newEnd);

    static inline SecretServiceDeadline* current =
        nullptr; ///< of the operation at hand: all run on one thread
    GCancellable* cancellable_ = g_cancellable_new();
    std::mutex mutex_;
    std::condition_variable_any changed_;
    std::chrono::steady_clock::time_point end_;
    std::jthread watcher_; ///< the last to be made, the first to end
};

} // namespace MirrowvaleAuthenticator
