#include "tests/powercut/meddling.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <set>
#include <string>

namespace meddling {

Meddling state;

namespace {

struct NamedMistake {
    std::string_view name;
    Mistake mistake;
};

constexpr NamedMistake namedMistakes[] = {
    {"none", Mistake::none},
    {"no-flush", Mistake::noFlush},
    {"no-flush-after-rename", Mistake::noFlushAfterRename},
    {"no-directory-flush", Mistake::noDirectoryFlush},
    {"index-in-place", Mistake::indexInPlace},
    {"leftover-deleted", Mistake::leftoverDeleted},
};

// Renamed and not written since.
struct Renamed {
    std::set<ino_t> files;
};

Renamed renamed;

template <typename Function>
Function* real(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

void nextCall() {
    if (state.pauseMilliseconds > 0)
        usleep(static_cast<useconds_t>(state.pauseMilliseconds) * 1000);
    if (state.calls == nullptr) return;
    if (*state.calls == state.endAtCall) _exit(0);
    ++*state.calls;
}

ino_t inodeOf(int descriptor) {
    struct stat status = {};
    return fstat(descriptor, &status) == 0 ? status.st_ino : 0;
}

bool isDirectory(int descriptor) {
    struct stat status = {};
    return fstat(descriptor, &status) == 0 && S_ISDIR(status.st_mode);
}

bool isFlushLeftOut(int descriptor, bool ofAll) {
    switch (state.mistake) {
        case Mistake::noFlush:
            return true;
        case Mistake::noFlushAfterRename:
            return ofAll ? !renamed.files.empty() : renamed.files.contains(inodeOf(descriptor));
        case Mistake::noDirectoryFlush:
            return !ofAll && isDirectory(descriptor);
        default:
            return false;
    }
}

std::string_view lastName(std::string_view path) {
    return path.substr(path.rfind('/') + 1);
}

bool writeInPlace(const char* from, const char* to) {
    const int source = open(from, O_RDONLY);
    const int target = open(to, O_WRONLY | O_CREAT | O_TRUNC, 0666);
    char block[4096];
    ssize_t count = 0;
    bool written = source >= 0 && target >= 0;
    while (written && (count = read(source, block, sizeof block)) > 0)
        written =
            real<decltype(::write)>("write")(target, block, static_cast<size_t>(count)) == count;
    written = written && real<decltype(::fsync)>("fsync")(target) == 0;
    close(source);
    close(target);
    return written && real<decltype(::unlink)>("unlink")(from) == 0;
}

template <typename Rename>
int renameUnlessMistaken(const char* from, const char* to, Rename rename) {
    nextCall();
    if (state.mistake == Mistake::indexInPlace && lastName(to) == "dictionary.2" &&
        access(to, F_OK) == 0)
        return writeInPlace(from, to) ? 0 : -1;
    const int result = rename();
    struct stat status = {};
    if (result == 0 && lstat(to, &status) == 0) renamed.files.insert(status.st_ino);
    return result;
}

int tellOf(int result) {
    if (result == 0 && state.flushMarker >= 0 && !tell(state.flushMarker, state.flushMark))
        return -1;
    return result;
}

alignas(512) constexpr char mark[512] = {};

}  // namespace

bool tell(int marker, long place) {
    return pwrite(marker, mark, sizeof mark, place) == sizeof mark;
}

std::optional<Mistake> mistakeOfName(std::string_view name) {
    for (const NamedMistake& named : namedMistakes) {
        if (named.name == name) return named.mistake;
    }
    return {};
}

}  // namespace meddling

using namespace meddling;

extern "C" {

ssize_t write(int descriptor, const void* bytes, size_t count) {
    nextCall();
    renamed.files.erase(inodeOf(descriptor));
    return real<ssize_t(int, const void*, size_t)>("write")(descriptor, bytes, count);
}

int ftruncate(int descriptor, off_t length) noexcept {
    nextCall();
    return real<int(int, off_t)>("ftruncate")(descriptor, length);
}

int fsync(int descriptor) {
    nextCall();
    if (isFlushLeftOut(descriptor, false)) return 0;
    return tellOf(real<int(int)>("fsync")(descriptor));
}

int fdatasync(int descriptor) {
    nextCall();
    if (isFlushLeftOut(descriptor, false)) return 0;
    return tellOf(real<int(int)>("fdatasync")(descriptor));
}

int syncfs(int descriptor) noexcept {
    nextCall();
    if (isFlushLeftOut(descriptor, true)) return 0;
    return tellOf(real<int(int)>("syncfs")(descriptor));
}

int rename(const char* from, const char* to) noexcept {
    return renameUnlessMistaken(
        from, to, [&] { return real<int(const char*, const char*)>("rename")(from, to); });
}

int renameat2(int fromDirectory, const char* from, int toDirectory, const char* to,
              unsigned int flags) noexcept {
    return renameUnlessMistaken(from, to, [&] {
        return real<int(int, const char*, int, const char*, unsigned int)>("renameat2")(
            fromDirectory, from, toDirectory, to, flags);
    });
}

int link(const char* from, const char* to) noexcept {
    nextCall();
    return real<int(const char*, const char*)>("link")(from, to);
}

int unlink(const char* path) noexcept {
    nextCall();
    return real<int(const char*)>("unlink")(path);
}

}  // extern "C"
