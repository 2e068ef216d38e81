#include "tests/ui/SceneFixture.h"

#include <QDropEvent>
#include <QMimeData>
#include <QTest>

#include <algorithm>
#include <fstream>
#include <ranges>
#include <sstream>
#include <string>

namespace MirrowvaleAuthenticator {
namespace {

/// A text that stands nowhere in memory but where it is typed: each letter is worked out anew.
struct Typed {
    static constexpr std::size_t size = 48;

    char at(std::size_t index) const
    {
        return index + 1 < size ? static_cast<char>('A' + (index * index + start) % 26)
                                : '1'; // no digit of Base32: what is typed must not become a token
    }

    /// Whether ten characters of the text stand in a row in memory, `width` bytes apart.
    bool standsIn(const char* begin, const char* end, std::size_t width) const
    {
        const auto wanted = std::views::iota(0U, 10U);
        for (const char* first = begin; first + wanted.size() * width <= end; ++first) {
            if (std::ranges::all_of(wanted, [&](auto i) { return first[i * width] == at(20 + i); })) {
                return true;
            }
        }
        return false;
    }

    std::size_t start;
};

/// Whether the text stands anywhere in what this process can write, as UTF-8 or as UTF-16.
bool inMemory(const Typed& text)
{
    std::ifstream maps("/proc/self/maps");
    for (std::string line; std::getline(maps, line);) {
        std::istringstream fields(line);
        std::uintptr_t begin = 0;
        std::uintptr_t end = 0;
        char dash = 0;
        std::string access;
        fields >> std::hex >> begin >> dash >> end >> access;
        if (!access.starts_with("rw") || line.find("[v") != std::string::npos) {
            continue;
        }
        const auto* memory = reinterpret_cast<const char*>(begin);
        const auto* past = reinterpret_cast<const char*>(end);
        if (text.standsIn(memory, past, 1) || text.standsIn(memory, past, 2)) {
            return true;
        }
    }
    return false;
}

void type(const Typed& text, QQuickWindow& window)
{
    for (std::size_t index = 0; index < Typed::size; ++index) {
        QTest::keyClick(&window, text.at(index));
    }
}

void drop(const Typed& text, QQuickWindow& window)
{
    QString dropped;
    for (std::size_t index = 0; index < Typed::size; ++index) {
        dropped += QLatin1Char(text.at(index));
    }
    QMimeData data;
    data.setText(dropped);
    const QPoint place = window.activeFocusItem()->mapToScene({20, 20}).toPoint();
    QDragEnterEvent enter(place, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, {});
    QDropEvent drop(place, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, {});
    QCoreApplication::sendEvent(&window, &enter);
    QCoreApplication::sendEvent(&window, &drop);
    EXPECT_EQ(drop.dropAction(), Qt::CopyAction) << "it stays where it was dragged from";
}

using TypedSecretTest = SceneTest;

TEST_F(TypedSecretTest, noCopyOfAFieldOutlivesTheSheet)
{
    build();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    // The URI's field has focus; the secret's lies further down.
    for (const auto& [tabs, enter] : {std::pair{0U, &type}, {3U, &type}, {2U, &drop}}) {
        contentView.setShowingAdd(true);
        ASSERT_TRUE(QTest::qWaitFor([this] { return window->activeFocusItem() != nullptr; }));
        for (auto press = 0U; press < tabs; ++press) {
            QTest::keyClick(window.get(), Qt::Key_Tab);
        }
        const Typed text{tabs};
        enter(text, *window);
        ASSERT_TRUE(inMemory(text)) << "after " << tabs << " presses of Tab";
        contentView.addTokenView()->importFromURI();
        contentView.addTokenView()->saveManualToken();
        contentView.addTokenView()->cancel();
        ASSERT_TRUE(QTest::qWaitFor([this] { return contentView.addTokenView() == nullptr; }));
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        EXPECT_FALSE(inMemory(text)) << "after " << tabs << " presses of Tab";
    }
}

} // namespace
} // namespace MirrowvaleAuthenticator
