#include "services/disk/directories.h"

#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <system_error>

#include "services/disk/file_kinds.h"
#include "services/disk/memory.h"
#include "services/disk/posix/terminated_path.h"

namespace services {

Path currentDirectory() {
    std::error_code error;
    Path path = std::filesystem::current_path(error).native();
    if (error || path.empty()) return {};
    if (path.back() != '/') path += '/';
    return path;
}

Path absolutePath(PathView path) {
    if (!isUsablePath(path)) return {};
    return path.front() == '/' ? Path(path) : currentDirectory() + Path(path);
}

bool setCurrentDirectory(PathView path) {
    return isUsablePath(path) && chdir(Path(path).c_str()) == 0;
}

bool createDirectory(PathView path) {
    return isUsablePath(path) && mkdir(Path(path).c_str(), 0700) == 0;
}

bool deleteFile(PathView path) {
    return isUsablePath(path) && unlink(TerminatedPath(path).c_str()) == 0;
}

FileKind kindOf(PathView path, LinksAre links) {
    if (!isUsablePath(path)) return FileKind::missing;
    const TerminatedPath terminated(path);
    struct stat status = {};
    const int result = links == LinksAre::followed ? stat(terminated.c_str(), &status)
                                                   : lstat(terminated.c_str(), &status);
    if (result != 0) {
        return errno == ENOENT || errno == ENOTDIR ? FileKind::missing : FileKind::untold;
    }
    if (S_ISREG(status.st_mode)) return FileKind::regular;
    if (S_ISDIR(status.st_mode)) return FileKind::directory;
    return S_ISLNK(status.st_mode) ? FileKind::link : FileKind::other;
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
    return kindOf(path, LinksAre::followed) == FileKind::directory;
}

std::vector<Path> namesInDirectory(PathView directory) {
    // Not by the standard library: its iterators end the program when memory runs out.
    std::vector<Path> names;
    if (!isUsablePath(directory)) return names;
    DIR* const listed = opendir(Path(directory).c_str());
    if (listed == nullptr) return names;
    static_cast<void>(withinMemory([&] {
        while (const dirent* const entry = readdir(listed)) {
            const PathView name = entry->d_name;
            if (name != "." && name != "..") names.emplace_back(name);
        }
    }));
    closedir(listed);
    return names;
}

Path executableDirectory() {
    // Where this link is missing the directory counts as unknown.
    std::error_code error;
    const Path path = std::filesystem::read_symlink("/proc/self/exe", error).native();
    const std::size_t slash = path.rfind('/');
    return error || slash == Path::npos ? Path() : path.substr(0, slash + 1);
}

}  // namespace services
