#include "ui/desktop/OnScreenKeyboard.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QGuiApplication>
#include <QInputMethod>
#include <QPointerEvent>
#include <QQuickItem>

#include <utility>

namespace MirrowvaleAuthenticator {

namespace {

constexpr QLatin1String keyboardService("sm.puri.OSK0");

/// Whether a pointer or a finger came down on the field that has focus.
bool pressesFocus(const QQuickWindow& window, const QEvent& event)
{
    const QQuickItem* field = window.activeFocusItem();
    if ((event.type() != QEvent::MouseButtonPress && event.type() != QEvent::TouchBegin)
        || field == nullptr) {
        return false;
    }
    const auto& press = static_cast<const QPointerEvent&>(event);
    return field->contains(field->mapFromScene(press.points().constFirst().scenePosition()));
}

} // namespace

OnScreenKeyboard::OnScreenKeyboard(QQuickWindow& window) : QObject(&window)
{
    window.installEventFilter(this);
    connect(qGuiApp, &QGuiApplication::focusObjectChanged, this, &OnScreenKeyboard::followFocus);
}

OnScreenKeyboard::~OnScreenKeyboard()
{
    if (wanted_) {
        setVisible(false);
    }
}

bool OnScreenKeyboard::isNeeded()
{
    return QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
}

bool OnScreenKeyboard::eventFilter(QObject* watched, QEvent* event)
{
    // The user may have hidden the on-screen keyboard meanwhile.
    if (wanted_ && pressesFocus(*qobject_cast<QQuickWindow*>(watched), *event)) {
        setVisible(true);
    }
    return QObject::eventFilter(watched, event);
}

void OnScreenKeyboard::followFocus()
{
    const bool wasWanted = std::exchange(wanted_, QInputMethod::queryFocusObject(Qt::ImEnabled, {}).toBool());
    if (wasWanted || wanted_) {
        setVisible(wanted_);
    }
}

void OnScreenKeyboard::setVisible(bool visible)
{
    QDBusMessage request = QDBusMessage::createMethodCall(keyboardService, QStringLiteral("/sm/puri/OSK0"),
                                                          keyboardService, QStringLiteral("SetVisible"));
    request << visible;
    request.setAutoStartService(false);
    QDBusConnection::sessionBus().send(request);
}

} // namespace MirrowvaleAuthenticator
