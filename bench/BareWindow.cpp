// A bare Qt Quick window, drawn by the same renderer as the application's.
//   bench_window [ROWS]      one text, or a list of one text per row

#include "platform/RenderDevice.h"

#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickWindow>
#include <QSGRendererInterface>

#include <memory>
#include <string>

int main(int argc, char* argv[])
{
    if (!MirrowvaleAuthenticator::hasRenderDevice()) {
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    }
    const QGuiApplication application(argc, argv);
    QQmlEngine engine;
    engine.addImportPath(QStringLiteral(":/qt/qml"));
    const bool isList = argc > 1;
    QQmlComponent component(&engine,
                            QUrl(QStringLiteral("qrc:/qt/qml/BareWindow/%1.qml")
                                     .arg(isList ? QStringLiteral("TextList") : QStringLiteral("OneText"))));
    const QVariantMap properties =
        isList ? QVariantMap{{QStringLiteral("count"), std::stoi(argv[1])}} : QVariantMap();
    const std::unique_ptr<QObject> window(component.createWithInitialProperties(properties));
    return window ? QGuiApplication::exec() : EXIT_FAILURE;
}
