#pragma once

#include "platform/system/PortalQuestion.h"

#include <QDBusMessage>
#include <QObject>
#include <QVariant>
#include <QtQml/qqmlregistration.h>

namespace MirrowvaleAuthenticator {

/// How the system wants applications to look, followed while the application runs. Desktops and phones
/// report it on the session bus (the Settings interface of the XDG desktop portal).
class SystemAppearance : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(int colorScheme READ colorScheme NOTIFY changed FINAL)
    Q_PROPERTY(qreal textScale READ textScale NOTIFY changed FINAL)
    Q_PROPERTY(bool moreContrast READ moreContrast NOTIFY changed FINAL)
    Q_PROPERTY(bool reducedMotion READ reducedMotion NOTIFY changed FINAL)

public:
    /// Waits for the desktop's answer, where one is awaited, until 200 ms after the question; an answer that
    /// comes later is followed as any change.
    explicit SystemAppearance(QObject* parent = nullptr);

    /// Names the question that the desktop has been asked; before the scene is built, which it must outlive.
    static void await(PortalQuestion& question) { awaited = &question; }

    int colorScheme() const { return colorScheme_; } ///< 1 for dark, 2 for light, 0 for no preference
    qreal textScale() const { return textScale_; } ///< factor on every text size, from 0.8 to 2
    /// Whether texts, symbols and lines are to have more contrast.
    bool moreContrast() const { return contrastRaised_ || highContrast_; }
    /// Whether animations are unwanted.
    bool reducedMotion() const { return motionReduced_ || animationsOff_; }

    /// Applies one setting of the portal; one that means nothing here is ignored.
    void apply(const QString& group, const QString& key, const QVariant& value);

signals:
    void changed();

private slots:
    void settingChanged(const QDBusMessage& signal);

private:
    void receive(PortalQuestion& question);

    static PortalQuestion* awaited;

    int colorScheme_ = 0;
    qreal textScale_ = 1;
    bool contrastRaised_ = false; ///< by the setting that all desktops share
    bool highContrast_ = false; ///< by GNOME's own
    bool motionReduced_ = false;
    bool animationsOff_ = false;
};

} // namespace MirrowvaleAuthenticator
