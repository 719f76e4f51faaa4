#include "services/disk/file_moves.h"

#include "services/disk/directories.h"
#include "services/disk/file_kinds.h"
#include "services/disk/system_files.h"

namespace services {

bool cutFile(PathView path, std::int64_t length) {
    const OpenFile file = openRegularFile(path, Opening::write);
    if (file == noFile) return false;
    const std::int64_t before = lengthOfOpenFile(file);
    const bool cut =
        before <= length || (length >= 0 && resizeOpenFile(file, length) && flushOpenFile(file));
    closeOpenFile(file);
    return cut;
}

bool isRegularFile(PathView path) {
    return kindOf(path, LinksAre::refused) == FileKind::regular;
}

bool deleteRegularFile(PathView path) {
    return isRegularFile(path) && deleteFile(path);
}

}  // namespace services
