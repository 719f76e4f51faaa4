// What tests of signals begin with.
#pragma once

#include <csignal>

namespace tests {

// Whoever started the tests may ignore some signals, as nohup does, or a script's background job.
inline void takeSignals() {
    for (const int signal : {SIGTERM, SIGINT, SIGHUP})
        std::signal(signal, SIG_DFL);
}

}  // namespace tests
