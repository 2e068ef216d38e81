#include "ui/app/MakeMainWindow.h"

#include "ui/app/SymbolProvider.h"
#include "ui/app/WindowVisibility.h"
#include "ui/desktop/OnScreenKeyboard.h"

#include <QDebug>
#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlError>
#include <QScreen>
#include <QShortcut>
#include <QUrl>
#include <QVariantMap>

namespace MirrowvaleAuthenticator {

namespace {

constexpr QSize phone(390, 844); ///< the size of a phone's screen, in points

QVariantMap firstProperties(ContentView& contentView)
{
    const QScreen* screen = QGuiApplication::primaryScreen(); // none while no display is connected
    const QSize size = screen == nullptr ? phone : phone.boundedTo(screen->availableSize());
    return {{QStringLiteral("contentView"), QVariant::fromValue(&contentView)},
            {QStringLiteral("width"), size.width()},
            {QStringLiteral("height"), size.height()}};
}

/// Closes a window as its own button does, whatever is open: a shortcut of QML's would not while a menu is.
void closeByKeys(QQuickWindow& window)
{
    for (const auto& keys : {QStringLiteral("Ctrl+Q"), QStringLiteral("Ctrl+W")}) {
        QObject::connect(new QShortcut(QKeySequence(keys), &window), &QShortcut::activated, &window,
                         &QWindow::close);
    }
}

/// Makes a window no larger than the free area of its screen, frame included, and moves all of it there.
void fitToScreen(QQuickWindow& window)
{
    const QRect space = window.screen()->availableGeometry().marginsRemoved(window.frameMargins());
    const QSize size = window.size().boundedTo(space.size());
    if (size != window.size() && window.windowStates() == Qt::WindowNoState) {
        const QPoint last = space.bottomRight() - QPoint(size.width() - 1, size.height() - 1);
        window.setGeometry(
            {QPoint(qBound(space.left(), window.x(), last.x()), qBound(space.top(), window.y(), last.y())),
             size});
    }
}

} // namespace

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
    std::unique_ptr<QQuickWindow> window(
        qobject_cast<QQuickWindow*>(component.createWithInitialProperties(firstProperties(contentView))));
    if (!window) {
        return nullptr;
    }
    closeByKeys(*window);
    // The first instant at which the frame that the window manager adds is known.
    QObject::connect(
        window.get(), &QQuickWindow::afterAnimating, window.get(),
        [shown = window.get()] { fitToScreen(*shown); }, Qt::SingleShotConnection);
    new WindowVisibility(*window, contentView);
    if (OnScreenKeyboard::isNeeded()) {
        new OnScreenKeyboard(*window);
    }
    return window;
}

} // namespace MirrowvaleAuthenticator
