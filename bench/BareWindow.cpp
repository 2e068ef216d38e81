// A bare Qt Quick window, drawn by the same renderer as the application's.
//   bench_window [ROWS]      one text, or a list of one text per row

#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickWindow>
#include <QSGRendererInterface>

#include <filesystem>
#include <memory>
#include <string>
#include <system_error>

namespace {

bool hasRenderDevice()
{
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator("/dev/dri", error)) {
        if (entry.path().filename().string().starts_with("renderD")) {
            return true;
        }
    }
    return false;
}

} // namespace

int main(int argc, char* argv[])
{
    if (!hasRenderDevice()) {
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
