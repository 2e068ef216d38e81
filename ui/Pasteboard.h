#pragma once

#include <QString>

namespace MirrowvaleAuthenticator {

/// The system's general pasteboard.
struct Pasteboard {
    /// Replaces what the clipboard holds by plain text, marked so that clipboard histories leave it out.
    static void setString(const QString& text);

    /// Takes back what this application selected, where the window system hands selected text to whatever a
    /// middle click pastes it into.
    static void withdrawSelection();
};

} // namespace MirrowvaleAuthenticator
