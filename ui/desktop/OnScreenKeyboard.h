#pragma once

#include <QObject>
#include <QQuickWindow>

namespace MirrowvaleAuthenticator {

/// Has a phone's shell show its on-screen keyboard while a field of the window has focus, and only then. The
/// shell's own interface on the session bus is used, `sm.puri.OSK0`; where nobody owns that name, as on a
/// desktop, nobody is reached and nothing is started. What the keyboard types comes as ordinary key events.
/// Nothing waits for an answer.
class OnScreenKeyboard : public QObject {
    Q_OBJECT

public:
    /// @param window  becomes its parent
    explicit OnScreenKeyboard(QQuickWindow& window);
    ~OnScreenKeyboard() override;

    /// Whether the toolkit leaves it to the application. Its Wayland plugin of 6.4 does not speak the
    /// protocol by which such a shell is asked (text-input-v3); that of 6.8 asks, but leaves the keyboard up
    /// when focus goes from a field to something else. Elsewhere the window system takes care of it.
    static bool isNeeded();

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void followFocus();
    static void setVisible(bool visible);

    bool wanted_ = false; ///< a field has focus
};

} // namespace MirrowvaleAuthenticator
