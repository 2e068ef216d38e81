#include "ui/app/WindowVisibility.h"

#include <QDBusConnection>
#include <QEvent>

namespace MirrowvaleAuthenticator {

WindowVisibility::WindowVisibility(QWindow& window, ContentView& screen)
    : QObject(&window), window_(window), screen_(screen)
{
    window_.installEventFilter(this);
    // Its event may come only after a frame that was due already.
    connect(&window_, &QWindow::windowStateChanged, this, &WindowVisibility::update);
    for (const auto& interface :
         {QStringLiteral("org.freedesktop.ScreenSaver"), QStringLiteral("org.gnome.ScreenSaver")}) {
        QDBusConnection::sessionBus().connect({}, {}, interface, QStringLiteral("ActiveChanged"), this,
                                              SLOT(screenSaverChanged(bool)));
    }
    update();
}

bool WindowVisibility::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type()) {
    case QEvent::Enter:
    case QEvent::FocusIn:
    case QEvent::KeyPress:
    case QEvent::MouseButtonPress:
    case QEvent::TouchBegin:
        covered_ = false; // whatever the screen saver said last
        update();
        break;
    case QEvent::Expose: // before the frame that follows from it
        update();
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

void WindowVisibility::screenSaverChanged(bool active)
{
    covered_ = active;
    update();
}

void WindowVisibility::update()
{
    const bool minimised = (window_.windowStates() & Qt::WindowMinimized) != 0;
    screen_.setVisible(window_.isExposed() && !minimised && !covered_);
}

} // namespace MirrowvaleAuthenticator
