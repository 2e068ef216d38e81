#include "ui/desktop/SystemAppearance.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QGuiApplication>
#include <QScreen>
#include <QSocketNotifier>

#include <chrono>

namespace MirrowvaleAuthenticator {

namespace {

/// How long the first frame waits for the desktop, counted from the question on.
constexpr std::chrono::milliseconds longestWait{200};

constexpr QLatin1String portalService("org.freedesktop.portal.Desktop");
constexpr QLatin1String portalPath("/org/freedesktop/portal/desktop");
constexpr QLatin1String portalInterface("org.freedesktop.portal.Settings");
constexpr QLatin1String appearanceGroup("org.freedesktop.appearance");
constexpr QLatin1String gnomeInterfaceGroup("org.gnome.desktop.interface");
constexpr QLatin1String gnomeAccessibilityGroup("org.gnome.desktop.a11y.interface");

/// An X server's resolution holds the text scale already, and Qt scales everything by it.
bool isScaledByDisplay()
{
    const QScreen* screen = QGuiApplication::primaryScreen();
    return QGuiApplication::platformName() == QLatin1String("xcb") && screen != nullptr
        && screen->devicePixelRatio() != 1;
}

} // namespace

PortalQuestion* SystemAppearance::awaited = nullptr;

SystemAppearance::SystemAppearance(QObject* parent) : QObject(parent)
{
    // The slot has the whole message: one with a QDBusVariant was seen to be refused while the toolkit did
    // not know that type yet.
    QDBusConnection::sessionBus().connect(portalService, portalPath, portalInterface,
                                          QStringLiteral("SettingChanged"), this,
                                          SLOT(settingChanged(QDBusMessage)));
    if (awaited != nullptr) {
        receive(*awaited);
    }
}

void SystemAppearance::receive(PortalQuestion& question)
{
    if (const auto settings = question.takeAnswer(longestWait)) {
        for (const DesktopSetting& setting : *settings) {
            apply(QString::fromStdString(setting.group), QString::fromStdString(setting.key), setting.value);
        }
        return;
    }
    auto* notifier = new QSocketNotifier(question.descriptor(), QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this, notifier, &question] {
        notifier->setEnabled(false);
        notifier->deleteLater();
        receive(question);
    });
}

void SystemAppearance::settingChanged(const QDBusMessage& signal)
{
    const QVariantList parts = signal.arguments();
    if (signal.signature() == QLatin1String("ssv")) {
        apply(parts[0].toString(), parts[1].toString(), parts[2].value<QDBusVariant>().variant());
    }
}

void SystemAppearance::apply(const QString& group, const QString& key, const QVariant& value)
{
    if (group == appearanceGroup && key == QLatin1String("color-scheme")) {
        const int scheme = value.toInt();
        colorScheme_ = scheme == 1 || scheme == 2 ? scheme : 0;
    } else if (group == appearanceGroup && key == QLatin1String("contrast")) {
        contrastRaised_ = value.toUInt() == 1;
    } else if (group == gnomeAccessibilityGroup && key == QLatin1String("high-contrast")) {
        highContrast_ = value.toBool();
    } else if (group == appearanceGroup && key == QLatin1String("reduced-motion")) {
        motionReduced_ = value.toUInt() == 1;
    } else if (group == gnomeInterfaceGroup && key == QLatin1String("enable-animations")) {
        animationsOff_ = !value.toBool();
    } else if (group == gnomeInterfaceGroup && key == QLatin1String("text-scaling-factor")) {
        const qreal factor = value.toDouble();
        textScale_ = factor > 0 && !isScaledByDisplay() ? qBound(0.8, factor, 2.0) : 1;
    } else {
        return;
    }
    emit changed();
}

} // namespace MirrowvaleAuthenticator
