#include "platform/credentials/keyring/SecretServiceDeadline.h"

namespace MirrowvaleAuthenticator {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds timeout{4};

} // namespace

SecretServiceDeadline::SecretServiceDeadline()
    : end_(Clock::now() + timeout), watcher_([this](const std::stop_token& stop) { watch(stop); })
{
    current = this;
}

SecretServiceDeadline::~SecretServiceDeadline()
{
    current = nullptr;
    watcher_.request_stop();
    watcher_.join();
    g_object_unref(cancellable_);
}

void SecretServiceDeadline::watch(const std::stop_token& stop)
{
    std::unique_lock lock(mutex_);
    while (!stop.stop_requested() && Clock::now() < end_) {
        const auto seen = end_;
        changed_.wait_until(lock, stop, seen, [&] { return end_ != seen; });
    }
    if (!stop.stop_requested()) {
        g_cancellable_cancel(cancellable_);
    }
}

void SecretServiceDeadline::setEnd(Clock::time_point newEnd)
{
    {
        const std::lock_guard lock(mutex_);
        end_ = newEnd;
    }
    changed_.notify_all();
}

SecretServiceDeadline::Pause::Pause()
{
    if (current != nullptr) {
        remaining_ = current->end_ - Clock::now();
        current->setEnd(Clock::now() + std::chrono::hours(24 * 365));
    }
}

SecretServiceDeadline::Pause::~Pause()
{
    if (current != nullptr) {
        current->setEnd(Clock::now() + remaining_);
    }
}

} // namespace MirrowvaleAuthenticator
