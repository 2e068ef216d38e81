#pragma once

#include "ui/screens/ContentView.h"

#include <QObject>
#include <QWindow>

namespace MirrowvaleAuthenticator {

/// Reports to the list screen whether anybody can see its window, so that nothing wakes this process while
/// nobody can: not while the window system shows nothing of the window, or it is minimised, nor while the
/// session's screen saver or lock screen says that it covers everything. Goes with its window.
class WindowVisibility : public QObject {
    Q_OBJECT

public:
    /// @param screen  must outlive the window
    WindowVisibility(QWindow& window, ContentView& screen);

    bool eventFilter(QObject* watched, QEvent* event) override;

private slots:
    void screenSaverChanged(bool active);

private:
    void update();

    QWindow& window_;
    ContentView& screen_;
    bool covered_ = false;
};

} // namespace MirrowvaleAuthenticator
