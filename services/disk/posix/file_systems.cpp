#include <sys/statvfs.h>
#ifdef __linux__
#include <linux/magic.h>
#include <sys/vfs.h>
#else
#include <sys/mount.h>
#include <sys/param.h>
#endif

#include "services/disk/posix/terminated_path.h"
#include "services/disk/system_files.h"

namespace services {

namespace {

TerminatedPath pathOf(PathView directory) {
    return TerminatedPath(directory.empty() ? PathView(".") : directory);
}

}  // namespace

bool renamesInOneStep(PathView directory) {
    struct statfs status = {};
    // A FAT of which a part can't be read may not tell that either: what is done there is safe
    // elsewhere, too.
    if (statfs(pathOf(directory).c_str(), &status) != 0) return false;
#ifdef __linux__
    return status.f_type != MSDOS_SUPER_MAGIC && status.f_type != EXFAT_SUPER_MAGIC;
#else
    const PathView name = status.f_fstypename;
    return name != "msdos" && name != "msdosfs" && name != "exfat";
#endif
}

std::int64_t freeBytes(PathView directory) {
    struct statvfs status = {};
    if (statvfs(pathOf(directory).c_str(), &status) != 0) return -1;
    return static_cast<std::int64_t>(status.f_bavail) * static_cast<std::int64_t>(status.f_frsize);
}

}  // namespace services
