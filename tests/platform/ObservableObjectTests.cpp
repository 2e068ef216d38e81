#include "platform/ObservableObject.h"

#include <gtest/gtest.h>

namespace MirrowvaleAuthenticator {

namespace {

class Counter : public ObservableObject {
public:
    Published<int> count{*this, 1};
};

} // namespace

TEST(ObservableObject, announcesEachAssignmentBeforeItHappens)
{
    Counter counter;
    std::vector<int> seen;
    const auto subscription = counter.objectWillChange([&] { seen.push_back(*counter.count); });
    EXPECT_TRUE(seen.empty());
    counter.count = 2;
    counter.count = 2;
    counter.count.modify([](int& count) {
        count += 1;
        count += 1;
    });
    EXPECT_EQ(seen, (std::vector{1, 2, 2}));
    EXPECT_EQ(*counter.count, 4);
}

TEST(ObservableObject, tellsObserversInOrderUntilTheyLeave)
{
    Counter counter;
    std::string told;
    auto first = counter.objectWillChange([&] { told += 'a'; });
    ObservableObject::Subscription second;
    ObservableObject::Subscription third;
    second = counter.objectWillChange([&] {
        told += 'b';
        third = counter.objectWillChange([&] { told += 'c'; });
        second = {}; // while it is being told
    });
    for (const auto* expected : {"ab", "abac", "abacc"}) {
        counter.count = 2;
        EXPECT_EQ(told, expected);
        if (told == "abac") {
            first = {};
        }
    }
}

} // namespace MirrowvaleAuthenticator
