#include "ui/app/EndingSignals.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace MirrowvaleAuthenticator {

namespace {

constexpr std::array endingSignals{SIGTERM, SIGINT, SIGHUP};

std::array<int, 2> wakeUp{}; ///< a pipe
volatile std::sig_atomic_t received = 0;

/// May call only what POSIX allows a signal's handler.
void receive(int number)
{
    for (const int each : endingSignals) {
        static_cast<void>(std::signal(each, SIG_DFL));
    }
    received = number;
    const int error = errno;
    [[maybe_unused]] const auto written = write(wakeUp[1], "", 1);
    errno = error;
}

} // namespace

void quitAtEndingSignals()
{
    if (pipe2(wakeUp.data(), O_CLOEXEC) != 0) {
        return;
    }
    auto* notifier = new QSocketNotifier(wakeUp[0], QSocketNotifier::Read, QCoreApplication::instance());
    QObject::connect(notifier, &QSocketNotifier::activated, notifier, [notifier] {
        notifier->setEnabled(false);
        QCoreApplication::quit();
    });
    for (const int number : endingSignals) {
        if (std::signal(number, receive) == SIG_IGN) {
            static_cast<void>(std::signal(number, SIG_IGN));
        }
    }
}

void raiseEndingSignal()
{
    if (received != 0) {
        static_cast<void>(std::raise(received));
    }
}

} // namespace MirrowvaleAuthenticator
