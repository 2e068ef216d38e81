#include "platform/credentials/keyring/SecretServiceDeadline.h"

namespace MirrowvaleAuthenticator {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds patience{4};

} // namespace

SecretServiceDeadline::SecretServiceDeadline()
    : end(Clock::now() + patience), watcher([this](const std::stop_token& stop) { watch(stop); })
{
    current = this;
}

SecretServiceDeadline::~SecretServiceDeadline()
{
    current = nullptr;
    watcher.request_stop();
    watcher.join();
    g_object_unref(calls);
}

void SecretServiceDeadline::watch(const std::stop_token& stop)
{
    std::unique_lock lock(mutex);
    while (!stop.stop_requested() && Clock::now() < end) {
        const auto seen = end;
        changed.wait_until(lock, stop, seen, [&] { return end != seen; });
    }
    if (!stop.stop_requested()) {
        g_cancellable_cancel(calls);
    }
}

void SecretServiceDeadline::setEnd(Clock::time_point newEnd)
{
    {
        const std::lock_guard lock(mutex);
        end = newEnd;
    }
    changed.notify_all();
}

SecretServiceDeadline::Pause::Pause()
{
    if (current != nullptr) {
        remaining = current->end - Clock::now();
        current->setEnd(Clock::now() + std::chrono::hours(24 * 365));
    }
}

SecretServiceDeadline::Pause::~Pause()
{
    if (current != nullptr) {
        current->setEnd(Clock::now() + remaining);
    }
}

} // namespace MirrowvaleAuthenticator
