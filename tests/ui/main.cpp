#include "ui/accessibility/AccessibleFactory.h"

#include <QGuiApplication>
#include <QQuickWindow>
#include <QTemporaryDir>

#include <gtest/gtest.h>

/// Whatever the toolkit or its QML engine has to say fails the test that it happens in.
static void failAt(QtMsgType, const QMessageLogContext&, const QString& message)
{
    ADD_FAILURE() << message.toStdString();
}

/// Runs the tests with an event loop and a clipboard, but without a display.
int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    qInstallMessageHandler(failAt);
    const QTemporaryDir runtime;
    qputenv("XDG_RUNTIME_DIR", runtime.path().toLocal8Bit());
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    const QGuiApplication application(argc, argv);
    MirrowvaleAuthenticator::installAccessibleFactory();
    return RUN_ALL_TESTS();
}
