#pragma once

#include "core/AuthToken.h"

#include <vector>

namespace MirrowvaleAuthenticator {

/// One list of two: `tokens` in their order, then those of `others` whose `id` is not among them. Of a token
/// in both, the larger counter is used: its codes up to there may have been used.
std::vector<AuthToken> merged(std::vector<AuthToken> tokens, const std::vector<AuthToken>& others);

} // namespace MirrowvaleAuthenticator
