#pragma once

#include "tests/ui/ScreenFixture.h"
#include "ui/ContentView.h"
#include "ui/SymbolProvider.h"

#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>

#include <memory>

namespace MirrowvaleAuthenticator {

/// The whole window on the screens' state, drawn nowhere.
class SceneTest : public ScreenTest {
protected:
    void build()
    {
        engine.addImportPath(QStringLiteral(":/qt/qml"));
        engine.addImageProvider(QStringLiteral("symbol"), new SymbolProvider);
        QQmlComponent component(&engine,
                                QUrl(QStringLiteral("qrc:/qt/qml/MirrowvaleAuthenticator/qml/Main.qml")));
        window.reset(qobject_cast<QQuickWindow*>(component.createWithInitialProperties(
            {{QStringLiteral("contentView"), QVariant::fromValue(&contentView)}})));
        ASSERT_NE(window, nullptr) << component.errorString().toStdString();
    }

    ContentView contentView{store};
    QQmlEngine engine;
    std::unique_ptr<QQuickWindow> window;
};

} // namespace MirrowvaleAuthenticator
