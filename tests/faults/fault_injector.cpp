#include "tests/faults/fault_injector.h"

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <linux/magic.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>
#include <type_traits>

#ifdef FAULT_TESTS_COUNT_COVERAGE
extern "C" {
#include <gcov.h>
}
#endif

namespace fault_injector {

namespace {

constexpr int nameLimit = 20'000;

struct Injector {
    bool armed = false;
    bool plain = false;
    bool isFat = false;
    bool isFull = false;
    int calls = 0;
    Fault fault;
    const char* names[nameLimit] = {};
};

Injector injector;

bool isFor(const Fault& fault, std::string_view name) {
    return fault.names[0].empty() || name == fault.names[0] || name == fault.names[1];
}

struct MemoryInjector {
    bool armed = false;
    bool goesOn = false;
    int at = 0;
    int allocations = 0;
};

MemoryInjector memory;

bool nextAllocationFails() {
    if (!memory.armed) return false;
    const int allocation = memory.allocations++;
    return memory.at >= 0 && (allocation == memory.at || (memory.goesOn && allocation > memory.at));
}

// What the next call is to do instead of its work.
FaultKind nextCall(const char* name) {
    if (!injector.armed || !isFor(injector.fault, name)) return FaultKind::none;
    const int call = injector.calls++;
    if (call < nameLimit) injector.names[call] = name;
    const Fault& fault = injector.fault;
    if (fault.kind == FaultKind::none || call < fault.at || (call > fault.at && !fault.goesOn))
        return FaultKind::none;
    if (fault.kind == FaultKind::kill) leaveProcess(killedStatus);
    if (fault.kind == FaultKind::interrupt) {
        const int error = errno;
        injector.armed = false;
        fault.meanwhile();
        injector.armed = true;
        errno = error;
    }
    return fault.kind;
}

// The C library's own function of that name.
template <typename Function>
Function* real(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

template <typename Function, typename... Arguments>
auto callOrFail(const char* name, Arguments... arguments)
    -> decltype(real<Function>(name)(arguments...)) {
    using Result = decltype(real<Function>(name)(arguments...));
    if (nextCall(name) == FaultKind::fail) {
        errno = injector.fault.error;
        if constexpr (std::is_pointer_v<Result>)
            return nullptr;
        else
            return static_cast<Result>(-1);
    }
    return real<Function>(name)(arguments...);
}

}  // namespace

void arm(const Fault& fault) {
    injector.fault = fault;
    injector.calls = 0;
    injector.armed = true;
}

void pretendPlainFileSystem(bool plain) {
    injector.plain = plain;
}

void pretendFat(bool isFat) {
    injector.isFat = isFat;
}

void pretendFullDisk(bool isFull) {
    injector.isFull = isFull;
}

void armMemory(int at, bool goesOn) {
    memory = {.armed = true, .goesOn = goesOn, .at = at, .allocations = 0};
}

int disarmMemory() {
    memory.armed = false;
    return memory.allocations;
}

int disarm() {
    injector.armed = false;
    return injector.calls;
}

void leaveProcess(int status) {
    injector.armed = false;
#ifdef FAULT_TESTS_COUNT_COVERAGE
    __gcov_dump();
#endif
    _exit(status);
}

const char* nameOfCall(int at) {
    return at >= 0 && at < nameLimit && injector.names[at] != nullptr ? injector.names[at] : "?";
}

bool wasWrite(int at) {
    return std::strcmp(nameOfCall(at), "write") == 0;
}

}  // namespace fault_injector

using fault_injector::callOrFail;
using fault_injector::FaultKind;
using fault_injector::injector;
using fault_injector::nextCall;
using fault_injector::real;

// All forms but the aligned ones: a sanitizer brings its own of those that are not here.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return fault_injector::nextAllocationFails() ? nullptr : std::malloc(size == 0 ? 1 : size);
}

void* operator new(std::size_t size) {
    void* const allocated = operator new(size, std::nothrow);
    if (allocated == nullptr) throw std::bad_alloc();
    return allocated;
}

void* operator new[](std::size_t size) {
    return operator new(size);
}

void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return operator new(size, std::nothrow);
}

void operator delete(void* allocated) noexcept {
    std::free(allocated);
}

void operator delete(void* allocated, std::size_t) noexcept {
    std::free(allocated);
}

void operator delete(void* allocated, const std::nothrow_t&) noexcept {
    std::free(allocated);
}

void operator delete[](void* allocated) noexcept {
    std::free(allocated);
}

void operator delete[](void* allocated, std::size_t) noexcept {
    std::free(allocated);
}

void operator delete[](void* allocated, const std::nothrow_t&) noexcept {
    std::free(allocated);
}

extern "C" {

int open(const char* path, int flags, ...) {
    mode_t mode = 0;
    if ((flags & O_CREAT) != 0) {
        va_list arguments;
        va_start(arguments, flags);
        mode = va_arg(arguments, mode_t);
        va_end(arguments);
    }
    return callOrFail<int(const char*, int, mode_t)>("open", path, flags, mode);
}

int close(int descriptor) {
    // The descriptor is gone whatever the call says.
    if (nextCall("close") != FaultKind::fail) return real<int(int)>("close")(descriptor);
    real<int(int)>("close")(descriptor);
    errno = injector.fault.error;
    return -1;
}

ssize_t read(int descriptor, void* bytes, size_t count) {
    const FaultKind kind = nextCall("read");
    if (kind == FaultKind::fail) {
        errno = injector.fault.error;
        return -1;
    }
    if (kind == FaultKind::shorten && count > 1) count /= 2;
    return real<ssize_t(int, void*, size_t)>("read")(descriptor, bytes, count);
}

ssize_t write(int descriptor, const void* bytes, size_t count) {
    const FaultKind kind = nextCall("write");
    if (kind == FaultKind::fail) {
        errno = injector.fault.error;
        return -1;
    }
    if ((kind == FaultKind::shorten || kind == FaultKind::killMidway) && count > 1) count /= 2;
    const ssize_t written =
        real<ssize_t(int, const void*, size_t)>("write")(descriptor, bytes, count);
    if (kind == FaultKind::killMidway) fault_injector::leaveProcess(fault_injector::killedStatus);
    return written;
}

int fsync(int descriptor) {
    static_cast<void>(descriptor);
    if (nextCall("fsync") == FaultKind::fail) {
        errno = injector.fault.error;
        return -1;
    }
    // What is killed here is a process and not the machine: waiting for the disk proves nothing.
    return 0;
}

int sync_file_range(int descriptor, off64_t offset, off64_t count, unsigned int flags) {
    return callOrFail<int(int, off64_t, off64_t, unsigned int)>("sync_file_range", descriptor,
                                                                offset, count, flags);
}

int syncfs(int descriptor) noexcept {
    static_cast<void>(descriptor);
    if (nextCall("syncfs") != FaultKind::fail) return 0;  // as fsync
    errno = injector.fault.error;
    return -1;
}

int fstatfs(int descriptor, struct statfs* status) noexcept {
    const int result = callOrFail<int(int, struct statfs*)>("fstatfs", descriptor, status);
    if (result == 0 && injector.isFat) status->f_type = MSDOS_SUPER_MAGIC;
    return result;
}

int statfs(const char* path, struct statfs* status) noexcept {
    const int result = callOrFail<int(const char*, struct statfs*)>("statfs", path, status);
    if (result == 0 && injector.isFat) status->f_type = MSDOS_SUPER_MAGIC;
    return result;
}

int statvfs(const char* path, struct statvfs* status) noexcept {
    const int result = callOrFail<int(const char*, struct statvfs*)>("statvfs", path, status);
    if (result == 0 && injector.isFull) status->f_bavail = 0;
    return result;
}

int posix_fadvise(int descriptor, off_t offset, off_t length, int advice) noexcept {
    return callOrFail<int(int, off_t, off_t, int)>("posix_fadvise", descriptor, offset, length,
                                                   advice);
}

int ftruncate(int descriptor, off_t length) noexcept {
    return callOrFail<int(int, off_t)>("ftruncate", descriptor, length);
}

off_t lseek(int descriptor, off_t position, int whence) noexcept {
    return callOrFail<off_t(int, off_t, int)>("lseek", descriptor, position, whence);
}

int stat(const char* path, struct stat* status) noexcept {
    return callOrFail<int(const char*, struct stat*)>("stat", path, status);
}

int lstat(const char* path, struct stat* status) noexcept {
    return callOrFail<int(const char*, struct stat*)>("lstat", path, status);
}

int access(const char* path, int mode) noexcept {
    return callOrFail<int(const char*, int)>("access", path, mode);
}

int faccessat(int directory, const char* path, int mode, int flags) noexcept {
    return callOrFail<int(int, const char*, int, int)>("faccessat", directory, path, mode, flags);
}

int fstat(int descriptor, struct stat* status) noexcept {
    return callOrFail<int(int, struct stat*)>("fstat", descriptor, status);
}

int futimens(int descriptor, const struct timespec times[2]) noexcept {
    return callOrFail<int(int, const struct timespec*)>("futimens", descriptor, times);
}

int rename(const char* from, const char* to) noexcept {
    return callOrFail<int(const char*, const char*)>("rename", from, to);
}

int renameat2(int fromDirectory, const char* from, int toDirectory, const char* to,
              unsigned int flags) noexcept {
    if (injector.plain && flags != 0) {
        errno = EINVAL;
        return -1;
    }
    return callOrFail<int(int, const char*, int, const char*, unsigned int)>(
        "renameat2", fromDirectory, from, toDirectory, to, flags);
}

int link(const char* from, const char* to) noexcept {
    if (injector.plain) {
        errno = EPERM;
        return -1;
    }
    return callOrFail<int(const char*, const char*)>("link", from, to);
}

int unlink(const char* path) noexcept {
    return callOrFail<int(const char*)>("unlink", path);
}

int mkdir(const char* path, mode_t mode) noexcept {
    return callOrFail<int(const char*, mode_t)>("mkdir", path, mode);
}

int chdir(const char* path) noexcept {
    return callOrFail<int(const char*)>("chdir", path);
}

char* getcwd(char* buffer, size_t size) noexcept {
    return callOrFail<char*(char*, size_t)>("getcwd", buffer, size);
}

int flock(int descriptor, int operation) noexcept {
    return callOrFail<int(int, int)>("flock", descriptor, operation);
}

DIR* opendir(const char* path) {
    return callOrFail<DIR*(const char*)>("opendir", path);
}

}  // extern "C"
