#pragma once

#include "tests/ui/ScreenFixture.h"
#include "ui/MainWindow.h"

#include <QQuickItem>

namespace MirrowvaleAuthenticator {

/// The whole window on the screens' state, drawn nowhere.
class SceneTest : public ScreenTest {
protected:
    void build()
    {
        window = makeMainWindow(engine, contentView);
        ASSERT_NE(window, nullptr);
    }

    ContentView contentView{store};
    QQmlEngine engine;
    std::unique_ptr<QQuickWindow> window;
};

} // namespace MirrowvaleAuthenticator
