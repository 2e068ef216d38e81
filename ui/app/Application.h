#pragma once

#include <QGuiApplication>

namespace MirrowvaleAuthenticator {

/// The toolkit's part of the application: its names, its default font and the user's language are set once it
/// is made.
class Application : public QGuiApplication {
public:
    Application(int& argc, char** argv);
};

} // namespace MirrowvaleAuthenticator
