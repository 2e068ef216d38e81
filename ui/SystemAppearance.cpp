#include "ui/SystemAppearance.h"

#include <QEvent>
#include <QGuiApplication>
#include <QPalette>

#include <utility>

namespace MirrowvaleAuthenticator {

namespace {

bool paletteIsDark()
{
    const QPalette palette = QGuiApplication::palette();
    return palette.color(QPalette::WindowText).lightness() > palette.color(QPalette::Window).lightness();
}

} // namespace

SystemAppearance::SystemAppearance(QObject* parent) : QObject(parent), dark(paletteIsDark())
{
    QCoreApplication::instance()->installEventFilter(this);
}

bool SystemAppearance::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::ApplicationPaletteChange && watched == QCoreApplication::instance()
        && std::exchange(dark, paletteIsDark()) != dark) {
        emit darkChanged();
    }
    return QObject::eventFilter(watched, event);
}

} // namespace MirrowvaleAuthenticator
