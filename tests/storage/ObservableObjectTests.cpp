#include "storage/ObservableObject.h"

#include <gtest/gtest.h>

namespace MirrowvaleAuthenticator {

TEST(ObservableObject, tellsObserversInOrderUntilTheyLeave)
{
    struct Counter : ObservableObject {
        Published<int> count{*this, 1};
    } counter;
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
