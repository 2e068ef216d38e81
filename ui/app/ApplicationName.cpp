#include "ui/app/ApplicationName.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDeadlineTimer>
#include <QThread>

#include <chrono>

namespace MirrowvaleAuthenticator {

namespace {

using namespace std::chrono_literals;

constexpr auto timeout = 5s; ///< of another process, to come to the front or to end

constexpr QLatin1String name("app.mirrowvale.authenticator");
constexpr QLatin1String objectPath("/app/mirrowvale/authenticator");
/// The first is what a desktop that knows both of them means.
constexpr QLatin1String activationTokenKey("activation-token");
constexpr QLatin1String startupIdKey("desktop-startup-id");

bool isTaken(const QDBusConnection& bus)
{
    const auto reply = bus.interface()->registerService(name);
    return reply.isValid() && reply.value() == QDBusConnectionInterface::ServiceNotRegistered;
}

QDBusMessage requestToComeToFront(const QString& activationToken)
{
    auto request = QDBusMessage::createMethodCall(
        name, objectPath, QStringLiteral("org.freedesktop.Application"), QStringLiteral("Activate"));
    request.setAutoStartService(false); // one that has ended makes room for this one
    request << QVariantMap{{activationTokenKey, activationToken}};
    return request;
}

} // namespace

bool ApplicationName::take(const QString& activationToken)
{
    auto bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        return true;
    }
    // The object first: a request may come as soon as the name is there.
    bus.registerObject(objectPath, this, QDBusConnection::ExportScriptableSlots);
    const QDeadlineTimer limit(timeout);
    while (isTaken(bus)) {
        const auto request = requestToComeToFront(activationToken);
        const auto reply = bus.call(request, QDBus::Block, static_cast<int>(limit.remainingTime()));
        if (reply.type() == QDBusMessage::ReplyMessage || limit.hasExpired()) {
            return false;
        }
        QThread::msleep(20);
    }
    return true;
}

void ApplicationName::Activate(const QVariantMap& platformData)
{
    emit activated(platformData.value(activationTokenKey, platformData.value(startupIdKey)).toString());
}

void ApplicationName::Open(const QStringList& /*uris*/, const QVariantMap& platformData)
{
    Activate(platformData);
}

} // namespace MirrowvaleAuthenticator
