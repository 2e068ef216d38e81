#include "platform/system/ProcessProtection.h"

#include <csignal>
#include <initializer_list>
#include <sys/prctl.h>
#include <sys/resource.h>

namespace MirrowvaleAuthenticator {

void protectProcess()
{
    const rlimit none{0, 0};
    setrlimit(RLIMIT_CORE, &none);
    prctl(PR_SET_DUMPABLE, 0, 0, 0, 0);
    for (const int number : {SIGXFSZ, SIGPIPE}) {
        static_cast<void>(signal(number, SIG_IGN));
    }
}

} // namespace MirrowvaleAuthenticator
