#include "platform/text/UUID.h"

#include <gtest/gtest.h>
#include <unordered_set>

namespace MirrowvaleAuthenticator {

// The fuzz target of the stored form checks which texts are identifiers.
TEST(UUID, makesDistinctRandomIdentifiers)
{
    std::unordered_set<UUID, UUIDHash> seen;
    for (int round = 0; round < 1000; ++round) {
        const auto id = UUID::random();
        EXPECT_TRUE(seen.insert(id).second);
        EXPECT_EQ(id.bytes[6] >> 4, 4) << "version";
        EXPECT_EQ(id.bytes[8] >> 6, 2) << "variant";
        EXPECT_EQ(UUID::fromString(id.string()), id);
    }
}

} // namespace MirrowvaleAuthenticator
