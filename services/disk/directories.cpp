#include "services/disk/directories.h"

#include <filesystem>
#include <system_error>

#include "services/disk/regular_files.h"

namespace services {

Path currentDirectory() {
    std::error_code error;
    Path path = std::filesystem::current_path(error).native();
    if (error || path.empty()) return {};
    if (path.back() != '/') path += '/';
    return path;
}

bool setCurrentDirectory(PathView path) {
    return isUsablePath(path) && chdir(Path(path).c_str()) == 0;
}

bool createDirectory(PathView path) {
    return isUsablePath(path) && mkdir(Path(path).c_str(), 0700) == 0;
}

bool deleteFile(PathView path) {
    return isUsablePath(path) && unlink(Path(path).c_str()) == 0;
}

FileLookup lookUpFile(PathView path) {
    if (!isUsablePath(path)) return FileLookup::missing;
    // Asked and not tried: an index asks for each of its files, and opening takes twice as long.
    const Path terminated(path);
    struct stat status = {};
    if (stat(terminated.c_str(), &status) == 0) {
        if (!S_ISREG(status.st_mode)) return FileLookup::missing;
        if (access(terminated.c_str(), R_OK) == 0) return FileLookup::readable;
    }
    const bool isMissing =
        errno == ENOENT || errno == ENOTDIR || errno == ELOOP || errno == ENAMETOOLONG;
    return isMissing ? FileLookup::missing : FileLookup::untold;
}

bool canReadFile(PathView path) {
    return lookUpFile(path) == FileLookup::readable;
}

bool isCurrentDirectory(PathView path) {
    struct stat status = {};
    struct stat current = {};
    return isUsablePath(path) && stat(Path(path).c_str(), &status) == 0 &&
           stat(".", &current) == 0 && status.st_dev == current.st_dev &&
           status.st_ino == current.st_ino;
}

bool isDirectory(PathView path) {
    struct stat status = {};
    return isUsablePath(path) && stat(Path(path).c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

Path executableDirectory() {
    // Where this link is missing the directory counts as unknown.
    std::error_code error;
    const Path path = std::filesystem::read_symlink("/proc/self/exe", error).native();
    const std::size_t slash = path.rfind('/');
    return error || slash == Path::npos ? Path() : path.substr(0, slash + 1);
}

}  // namespace services
