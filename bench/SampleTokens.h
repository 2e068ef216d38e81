#pragma once

#include "core/AuthToken.h"

#include <cstddef>
#include <vector>

namespace MirrowvaleAuthenticator {

/// Tokens such as people have: known services in no order, 20-byte keys, all time-based, so that every
/// row has its tick. The same ones for the same count.
std::vector<AuthToken> sampleTokens(std::size_t count);

} // namespace MirrowvaleAuthenticator
