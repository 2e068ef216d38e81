#include "ui/app/WindowSight.h"

#include <QDBusConnection>
#include <QEvent>

namespace MirrowvaleAuthenticator {

WindowSight::WindowSight(QWindow& window, ContentView& screen)
    : QObject(&window), window_(window), screen_(screen)
{
    window_.installEventFilter(this);
    // Its event may come only after a frame that was due already.
    connect(&window_, &QWindow::windowStateChanged, this, &WindowSight::tell);
    for (const auto& interface :
         {QStringLiteral("org.freedesktop.ScreenSaver"), QStringLiteral("org.gnome.ScreenSaver")}) {
        QDBusConnection::sessionBus().connect({}, {}, interface, QStringLiteral("ActiveChanged"), this,
                                              SLOT(screenSaverChanged(bool)));
    }
    tell();
}

bool WindowSight::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type()) {
    case QEvent::Enter:
    case QEvent::FocusIn:
        covered_ = false; // whatever the screen saver said last
        tell();
        break;
    case QEvent::Expose: // before the frame that follows from it
        tell();
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

void WindowSight::screenSaverChanged(bool active)
{
    covered_ = active;
    tell();
}

void WindowSight::tell()
{
    const bool minimised = (window_.windowStates() & Qt::WindowMinimized) != 0;
    screen_.setSeen(window_.isExposed() && !minimised && !covered_);
}

} // namespace MirrowvaleAuthenticator
