#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>

namespace MirrowvaleAuthenticator {

inline std::string contents(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

inline void overwrite(const std::filesystem::path& path, std::string_view bytes)
{
    std::ofstream(path, std::ios::binary | std::ios::trunc) << bytes;
}

/// Folders of its own for the application's files, named in the environment while it lives, then removed.
class TemporaryHome {
public:
    explicit TemporaryHome(const std::filesystem::path& parent = std::filesystem::temp_directory_path())
    {
        auto pattern = (parent / "mirrowvale-test-XXXXXX").string();
        if (mkdtemp(pattern.data()) == nullptr) {
            throw std::runtime_error("no temporary folder");
        }
        root = pattern;
        setenv("XDG_DATA_HOME", (root / "data").c_str(), 1);
        setenv("XDG_STATE_HOME", (root / "state").c_str(), 1);
        setenv("XDG_RUNTIME_DIR", (root / "runtime").c_str(), 1);
        setenv("HOME", (root / "home").c_str(), 1);
        unsetenv("DBUS_SESSION_BUS_ADDRESS"); // no keyring of this machine is a test's to fill
    }
    ~TemporaryHome()
    {
        std::error_code ignored;
        std::filesystem::remove_all(root, ignored);
    }
    TemporaryHome(const TemporaryHome&) = delete;
    TemporaryHome& operator=(const TemporaryHome&) = delete;

    std::filesystem::path data() const { return root / "data" / "mirrowvale-authenticator"; }
    std::filesystem::path state() const { return root / "state" / "mirrowvale-authenticator"; }

    std::filesystem::path root;
};

} // namespace MirrowvaleAuthenticator
