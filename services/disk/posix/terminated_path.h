// A path as system calls take it, without asking for memory: that may have run short, which is when
// what was begun has to go.
#pragma once

#include <algorithm>
#include <array>

#include "services/text/paths.h"

namespace services {

class TerminatedPath {
  public:
    explicit TerminatedPath(PathView path) {
        // No longer path is taken by the system: cut off, it names nothing.
        const PathView taken = path.size() < bytes.size() ? path : PathView();
        *std::copy(taken.begin(), taken.end(), bytes.begin()) = '\0';
    }

    // NOLINTNEXTLINE(readability-identifier-naming): as that of a string
    const char* c_str() const { return bytes.data(); }

  private:
    std::array<char, 4096> bytes;
};

}  // namespace services
