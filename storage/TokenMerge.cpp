#include "storage/TokenMerge.h"

#include <algorithm>
#include <cstddef>
#include <map>

namespace MirrowvaleAuthenticator {

std::vector<AuthToken> merged(std::vector<AuthToken> tokens, const std::vector<AuthToken>& others)
{
    if (others.empty()) {
        return tokens;
    }
    std::map<UUID, std::size_t> places; // of the first token with an id
    for (std::size_t place = 0; place < tokens.size(); ++place) {
        places.emplace(tokens[place].id, place);
    }
    for (const auto& other : others) {
        const auto [found, isNew] = places.emplace(other.id, tokens.size());
        if (isNew) {
            tokens.push_back(other);
        } else {
            auto& counter = tokens[found->second].counter;
            counter = std::max(counter, other.counter);
        }
    }
    return tokens;
}

} // namespace MirrowvaleAuthenticator
