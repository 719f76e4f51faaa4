#include "services/disk/endings.h"

#include "services/disk/ending_signals.h"

namespace services {

namespace {

struct Quitting {
    bool isAsked = false;
};

Quitting quitting;

}  // namespace

void askForQuit() {
    quitting.isAsked = true;
}

bool isQuitAsked() {
    return quitting.isAsked;
}

void forgetQuit() {
    quitting = {};
}

bool isEndingAsked() {
    return quitting.isAsked || isEndingNoted();
}

}  // namespace services
