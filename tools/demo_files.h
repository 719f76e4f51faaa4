// Writing a demonstration card and understanding what the command line asks for.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "services/text/paths.h"

namespace tools {

inline constexpr int mostDemoTrainings = 5000;

struct DemoOptions {
    services::Path directory;
    int trainings = 300;
    std::uint64_t seed = 1;

    bool operator==(const DemoOptions&) const = default;
};

// The arguments without the program's name; nothing when they make no sense.
std::optional<DemoOptions> parseDemoOptions(std::span<const char* const> arguments);

// Writes the tree below the directory, the index last. Never replaces a file, and leaves none
// half written. Returns what went wrong as a sentence for the user, empty when everything was
// written.
std::string writeDemoCard(const DemoOptions& options);

}  // namespace tools
