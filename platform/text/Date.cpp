#include "platform/text/Date.h"

#include <chrono>

namespace MirrowvaleAuthenticator {

Date Date::now()
{
    const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
    return fromSecondsSince1970(std::chrono::duration<double>(sinceEpoch).count());
}

} // namespace MirrowvaleAuthenticator
