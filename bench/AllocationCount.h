#pragma once

#include <cstddef>

namespace MirrowvaleAuthenticator {

/// How often `operator new` has been called in this process, which links a counting one.
std::size_t allocationCount();

} // namespace MirrowvaleAuthenticator
