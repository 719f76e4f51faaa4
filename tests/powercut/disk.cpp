#include "tests/powercut/disk.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/mount.h>
#include <sys/reboot.h>
#include <sys/statvfs.h>
#include <sys/syscall.h>
#include <sys/utsname.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <sstream>

namespace powercut {

namespace {

// As a desktop mounts them.
constexpr const char* vfatOptions =
    "uid=1000,gid=1000,fmask=0022,dmask=0077,shortname=mixed,utf8,flush,errors=remount-ro";
constexpr FileSystem fileSystems[] = {
    {"fat16", "vfat", vfatOptions, "fsck.vfat -a"},
    {"fat32", "vfat", vfatOptions, "fsck.vfat -a"},
    {"ext4", "ext4", "", "e2fsck -fy"},
    {"ext4-no-journal", "ext4", "", "e2fsck -fy", true},
};

[[noreturn]] void giveUp(const std::string& what) {
    std::printf("@error %s: %s\n", what.c_str(), std::strerror(errno));
    std::fflush(stdout);
    sync();
    reboot(RB_POWER_OFF);
    _exit(1);
}

}  // namespace

const FileSystem* fileSystemOfName(std::string_view name) {
    const auto* const found = std::ranges::find(fileSystems, name, &FileSystem::name);
    return found == std::end(fileSystems) ? nullptr : found;
}

void require(bool done, const std::string& what) {
    if (!done) giveUp(what);
}

// Spawned, as copying this process takes longer than the program runs.
bool doesRun(const std::string& line) {
    std::istringstream text(line);
    std::vector<std::string> words{std::istream_iterator<std::string>(text), {}};
    std::vector<char*> arguments;
    for (std::string& word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, 1, 2);
    pid_t child = 0;
    const int error =
        posix_spawnp(&child, arguments[0], &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    int status = 0;
    return error == 0 && waitpid(child, &status, 0) == child && WIFEXITED(status) &&
           WEXITSTATUS(status) == 0;
}

void loadModules() {
    utsname names = {};
    uname(&names);
    const std::string modules = std::string("/usr/lib/uml/modules/") + names.release + "/kernel/";
    struct Module {
        const char* path;
        const char* options;
    };
    constexpr Module list[] = {
        {"drivers/block/brd.ko", "rd_nr=2 rd_size=65536"},
        {"fs/nls/nls_iso8859-1.ko", ""},
        {"fs/nls/nls_cp437.ko", ""},
        {"fs/fat/fat.ko", ""},
        {"fs/fat/vfat.ko", ""},
        {"drivers/md/dm-mod.ko", ""},
        {"drivers/md/dm-log-writes.ko", ""},
    };
    for (const Module& module : list) {
        const int file = open((modules + module.path).c_str(), O_RDONLY | O_CLOEXEC);
        require(syscall(SYS_finit_module, file, module.options, 0) == 0, module.path);
        close(file);
    }
}

Image::Image(std::size_t bytes)
    : size(bytes),
      memory(static_cast<char*>(
                 mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0)),
             [bytes](char* pages) { munmap(pages, bytes); }) {
    require(memory.get() != MAP_FAILED && madvise(memory.get(), bytes, MADV_DONTFORK) == 0,
            "memory");
}

Image readImage(const fs::path& path) {
    Image image(fs::file_size(path));
    std::ifstream(path, std::ios::binary)
        .read(image.memory.get(), static_cast<std::streamsize>(image.size));
    return image;
}

void writeDisk(const Image& image) {
    const int device = open(diskDevice, O_WRONLY | O_DIRECT | O_CLOEXEC);
    require(pwrite(device, image.memory.get(), image.size, 0) == static_cast<ssize_t>(image.size),
            "writing the disk");
    close(device);
}

void readDisk(Image& image) {
    const int device = open(diskDevice, O_RDONLY | O_DIRECT | O_CLOEXEC);
    require(pread(device, image.memory.get(), image.size, 0) == static_cast<ssize_t>(image.size),
            "reading the disk");
    close(device);
}

bool mountCard(const FileSystem& system, const char* device) {
    return mount(device, cardDirectory.data(), system.type, MS_NOSUID | MS_NODEV, system.options) ==
           0;
}

void unmountCard() {
    require(umount(cardDirectory.data()) == 0, "unmounting");
}

bool isReadOnly(const fs::path& root) {
    struct statvfs status = {};
    return statvfs(root.c_str(), &status) == 0 && (status.f_flag & ST_RDONLY) != 0;
}

}  // namespace powercut
