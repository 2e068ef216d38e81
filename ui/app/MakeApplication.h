#pragma once

#include <QGuiApplication>

#include <memory>

namespace MirrowvaleAuthenticator {

/// The toolkit's part of the application, with its names, its default font and the user's language. Ends the
/// process with status 1 and a line on standard error where there is no display to open a window on.
///
/// @param argc  and `argv`: the toolkit removes its own options from them
std::unique_ptr<QGuiApplication> makeApplication(int& argc, char** argv);

} // namespace MirrowvaleAuthenticator
