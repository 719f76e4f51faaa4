// A small random number generator of our own: the same seed gives the same card on every machine
// and with every standard library.
#pragma once

#include <cstdint>

namespace tools {

struct Random {
    std::uint64_t state = 0;
};

// 64 even bits (the splitmix64 sequence).
std::uint64_t nextBits(Random& random);

// Even in low..high, both included.
int nextInteger(Random& random, int low, int high);

// Even in 0 (included) to 1 (excluded).
double nextReal(Random& random);

// About a normal distribution of mean 0 and deviation 1, never beyond 6.
double nextNormal(Random& random);

}  // namespace tools
