// Text handling on Latin-1 bytes. Lengths and positions count bytes; positions start at 1.
#pragma once

#include <cstdint>
#include <string>

#include "services/text/latin1.h"

namespace services {

// Joins any number of texts and single characters.
template <typename... Pieces>
Text concatenate(const Pieces&... pieces) {
    Text joined;
    ((joined += pieces), ...);
    return joined;
}

std::int64_t length(TextView text);

// The first or last `count` bytes; `count` is clamped to 0..length.
TextView left(TextView text, std::int64_t count);
TextView right(TextView text, std::int64_t count);

// 1-based position of the first occurrence at or after `start`, 0 if there is none. A start below 1
// is taken as 1. An empty search is found nowhere.
std::int64_t find(TextView text, TextView search, std::int64_t start = 1);

// Every occurrence replaced, left to right, without looking again at what was put in. An empty
// search changes nothing.
Text replace(TextView text, TextView search, TextView replacement);

// Maps A to Z to a to z and leaves every other byte as it is.
Text lowerCase(TextView text);

// Padded on the left to `width` bytes. A longer text is cut to its FIRST `width` bytes: columns of
// figures depend on that. A width below 0 gives an empty text.
Text rightAlign(TextView text, std::int64_t width, char pad = ' ');

bool equal(TextView a, TextView b);

}  // namespace services
