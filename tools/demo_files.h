// Writing a demonstration card and understanding what the command line asks for.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "services/text/dates.h"
#include "services/text/paths.h"

namespace tools {

inline constexpr int mostDemoTrainings = 5000;

// Even the longest card begins after 1970, and a card's dates end in 2038.
inline constexpr int firstDemoYear = 2010;
inline constexpr int lastDemoYear = 2037;

struct DemoOptions {
    services::Path directory;
    int trainings = 300;
    std::uint64_t seed = 1;
    services::DateValue until = 0;  // by when the last training is over; the card ends on that day

    bool operator==(const DemoOptions&) const = default;
};

// The arguments without the program's name; nothing when they make no sense. Told no day, the card
// ends today; a clock that runs in none of the years above counts as the nearest of them.
std::optional<DemoOptions> parseDemoOptions(std::span<const char* const> arguments,
                                            services::DateValue now);

// Writes the tree below the directory, the index last. Never replaces a file, and leaves none
// half written. Returns what went wrong as a sentence for the user, empty when everything was
// written.
std::string writeDemoCard(const DemoOptions& options);

}  // namespace tools
