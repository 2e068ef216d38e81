// A bare Qt Quick window, drawn by the same renderer as the application's.
//   bench_window              one text
//   bench_window ROWS         a list of one text per row
//   bench_window seconds      seven texts that change each second

#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>

#include <cstdlib>
#include <memory>
#include <string>

int main(int argc, char* argv[])
{
    setenv("QT_QUICK_BACKEND", "software", 0);
    const QGuiApplication application(argc, argv);
    QQmlEngine engine;
    engine.addImportPath(QStringLiteral(":/qt/qml"));
    const std::string choice = argc > 1 ? argv[1] : "";
    const auto* const name = choice.empty() ? "OneText" : choice == "seconds" ? "Seconds" : "TextList";
    QQmlComponent component(&engine,
                            QUrl(QStringLiteral("qrc:/qt/qml/BareWindow/%1.qml").arg(QLatin1String(name))));
    QVariantMap properties;
    if (component.url().fileName() == QLatin1String("TextList.qml")) {
        properties.insert(QStringLiteral("count"), std::stoi(choice));
    }
    const std::unique_ptr<QObject> window(component.createWithInitialProperties(properties));
    return window ? QGuiApplication::exec() : EXIT_FAILURE;
}
