// What happens when memory runs short: an action ends, the program goes on.
#pragma once

#include <cstdint>
#include <new>
#include <stdexcept>

namespace services {

// Runs the action. False when memory ran out before its end: what it has done until then stays
// done, so whatever must not be left half done is made ready before anything is changed.
template <typename Action>
bool withinMemory(const Action& action) {
    try {
        action();
        return true;
    } catch (const std::bad_alloc&) {
        return false;
    } catch (const std::length_error&) {
        return false;
    }
}

// True when so many bytes take no more than half of the machine's memory. To be asked before a
// length that a file claims is believed: many systems promise more memory than they have, and end
// the program that then uses it.
bool fitsIntoMemory(std::uint64_t bytes);

}  // namespace services
