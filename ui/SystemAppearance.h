#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace MirrowvaleAuthenticator {

/// How the system wants applications to look.
class SystemAppearance : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(bool dark READ isDark NOTIFY darkChanged FINAL)
    Q_PROPERTY(qreal textScale READ textScale NOTIFY textScaleChanged FINAL)
    Q_PROPERTY(bool reducedMotion READ reducedMotion NOTIFY reducedMotionChanged FINAL)

public:
    explicit SystemAppearance(QObject* parent = nullptr);

    bool isDark() const { return dark; } ///< followed while the application runs
    qreal textScale() const { return 1; } ///< factor on every text size
    bool reducedMotion() const { return false; } ///< whether animations are unwanted

    bool eventFilter(QObject* watched, QEvent* event) override;

signals:
    void darkChanged();
    void textScaleChanged();
    void reducedMotionChanged();

private:
    bool dark;
};

} // namespace MirrowvaleAuthenticator
