#include "services/disk/ending_signals.h"

#include <signal.h>  // sigaction, which <csignal> need not have

#include <array>
#include <atomic>
#include <cstddef>

#include "services/disk/endings.h"

namespace services {

namespace {

constexpr std::array endingSignals = {SIGTERM, SIGINT, SIGHUP};

struct Endings {
    std::array<struct sigaction, endingSignals.size()> before = {};
    bool arePutOff = false;
    std::atomic<int> signal = 0;  // written by whatever thread the signal finds
};
static_assert(std::atomic<int>::is_always_lock_free);

Endings endings;

void noteSignal(int number) {
    endings.signal = number;
}

}  // namespace

void putOffEndings() {
    if (endings.arePutOff) return;
    endings.arePutOff = true;
    endings.signal = 0;
    for (std::size_t i = 0; i < endingSignals.size(); ++i) {
        sigaction(endingSignals[i], nullptr, &endings.before[i]);
        if (endings.before[i].sa_handler == SIG_IGN) continue;
        struct sigaction action = {};
        action.sa_handler = noteSignal;
        action.sa_flags = static_cast<int>(SA_RESTART | SA_RESETHAND);
        sigemptyset(&action.sa_mask);
        sigaction(endingSignals[i], &action, nullptr);
    }
}

void endIfAsked() {
    if (!endings.arePutOff) return;
    endings.arePutOff = false;
    for (std::size_t i = 0; i < endingSignals.size(); ++i)
        sigaction(endingSignals[i], &endings.before[i], nullptr);
    // What ends the program is the signal, for whoever sent it to see.
    if (const int signal = endings.signal.exchange(0); signal != 0) raise(signal);
}

bool isEndingNoted() {
    return endings.signal != 0;
}

}  // namespace services
