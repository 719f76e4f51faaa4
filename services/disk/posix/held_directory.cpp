#include "services/disk/held_directory.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>

#include "services/disk/posix/descriptors.h"

namespace services {

Holding holdDirectory(HeldDirectory& held, PathView directory) {
    letGo(held);
    const Path path(directory.empty() ? PathView(".") : directory);
    const int descriptor = open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0) return Holding::impossible;
    if (flock(descriptor, LOCK_EX | LOCK_NB) == 0) {
        held.directory = openFileOf(descriptor);
        return Holding::done;
    }
    const Holding result = errno == EWOULDBLOCK ? Holding::heldByAnother : Holding::impossible;
    close(descriptor);
    return result;
}

void letGo(HeldDirectory& held) {
    if (held.directory != noFile) closeOpenFile(held.directory);
    held = {};
}

}  // namespace services
