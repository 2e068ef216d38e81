#pragma once

#include <string>
#include <string_view>

namespace MirrowvaleAuthenticator {

/// A file name for any text: everything but ASCII letters, digits, "." and "-" becomes a percent-escape.
std::string fileNamePart(std::string_view text);

} // namespace MirrowvaleAuthenticator
