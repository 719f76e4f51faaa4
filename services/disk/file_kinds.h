// What bears a name on the disk.
#pragma once

#include "services/text/paths.h"

namespace services {

enum class LinksAre { followed, refused };

enum class FileKind {
    missing,  // nothing of that name, or a link that leads nowhere where links are followed
    regular,
    directory,
    link,    // only where links are refused
    other,   // a device, a FIFO or a socket
    untold,  // the system can't tell
};

// Never waits, and opens nothing.
FileKind kindOf(PathView path, LinksAre links);

}  // namespace services
