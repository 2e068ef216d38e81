#include "ui/app/MakeMainWindow.h"

#include "ui/app/SymbolProvider.h"
#include "ui/app/WindowVisibility.h"
#include "ui/desktop/OnScreenKeyboard.h"

#include <QDebug>
#include <QQmlComponent>
#include <QQmlError>
#include <QUrl>
#include <QVariantMap>

namespace MirrowvaleAuthenticator {

std::unique_ptr<QQuickWindow> makeMainWindow(QQmlEngine& engine, ContentView& contentView)
{
    engine.addImportPath(QStringLiteral(":/qt/qml"));
    engine.addImageProvider(QStringLiteral("symbol"), new SymbolProvider);
    QQmlComponent component(&engine, QUrl(QStringLiteral("qrc:/qt/qml/MirrowvaleAuthenticator/Main.qml")));
    for (const QQmlError& error : component.errors()) {
        qCritical() << error;
    }
    if (!component.isReady()) {
        return nullptr; // creating it would crash
    }
    std::unique_ptr<QQuickWindow> window(qobject_cast<QQuickWindow*>(component.createWithInitialProperties(
        {{QStringLiteral("contentView"), QVariant::fromValue(&contentView)}})));
    if (!window) {
        return nullptr;
    }
    new WindowVisibility(*window, contentView);
    if (OnScreenKeyboard::isNeeded()) {
        new OnScreenKeyboard(*window);
    }
    return window;
}

} // namespace MirrowvaleAuthenticator
