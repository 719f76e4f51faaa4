#include <signal.h>
#include <unistd.h>

#include <cerrno>
#include <limits>

#include "services/disk/system_files.h"

namespace services {

std::int64_t processNumber() {
    return getpid();
}

bool isProcessGone(std::int64_t number) {
    if (number < 1 || number > std::numeric_limits<pid_t>::max()) return false;
    return kill(static_cast<pid_t>(number), 0) != 0 && errno == ESRCH;
}

}  // namespace services
