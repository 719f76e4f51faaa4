#include "tools/demo_random.h"

namespace tools {

std::uint64_t nextBits(Random& random) {
    random.state += 0x9E3779B97F4A7C15U;
    std::uint64_t bits = random.state;
    bits = (bits ^ (bits >> 30U)) * 0xBF58476D1CE4E5B9U;
    bits = (bits ^ (bits >> 27U)) * 0x94D049BB133111EBU;
    return bits ^ (bits >> 31U);
}

int nextInteger(Random& random, int low, int high) {
    const auto choices = static_cast<std::uint64_t>(high - low) + 1;
    return low + static_cast<int>(nextBits(random) % choices);
}

double nextReal(Random& random) {
    return static_cast<double>(nextBits(random) >> 11U) * 0x1p-53;
}

double nextNormal(Random& random) {
    // The sum of twelve even numbers: no logarithm or cosine, which differ from library to library.
    double sum = 0;
    for (int i = 0; i < 12; ++i)
        sum += nextReal(random);
    return sum - 6;
}

}  // namespace tools
