#include "ui/accessibility/AccessibleFactory.h"

#include <QGuiApplication>

#include <gtest/gtest.h>

/// Runs the tests with an event loop and a clipboard, but without a display.
int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    MirrowvaleAuthenticator::installAccessibleFactory();
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
