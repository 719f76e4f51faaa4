#include "services/disk/memory.h"

#include <unistd.h>

#include <limits>

namespace services {

bool fitsIntoMemory(std::uint64_t bytes) {
    const long pages = sysconf(_SC_PHYS_PAGES);
    const long pageSize = sysconf(_SC_PAGESIZE);
    // Where the system does not tell, asking for the memory has to do.
    if (pages < 1 || pageSize < 1) return bytes <= std::numeric_limits<std::size_t>::max() / 2;
    return bytes / static_cast<std::uint64_t>(pageSize) < static_cast<std::uint64_t>(pages) / 2;
}

}  // namespace services
