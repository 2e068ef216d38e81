#pragma once

#include <QGuiApplication>

namespace MirrowvaleAuthenticator {

/// The toolkit's part of the application: its names, its default font, the user's language and what its
/// connection takes at once are set when it is made.
class Application : public QGuiApplication {
public:
    Application(int& argc, char** argv);
};

} // namespace MirrowvaleAuthenticator
