#include "tests/powercut/recorder.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <fstream>
#include <utility>

#include "tests/powercut/judging.h"
#include "tests/powercut/meddling.h"
#include "tests/powercut/worker.h"

namespace powercut {

namespace {

constexpr const char* preparing = "prepare";
constexpr const char* recordedDevice = "/dev/dm-0";
constexpr std::size_t blockSize = 4096;

void writeSetting(const char* name, const char* value) {
    std::ofstream(std::string("/proc/sys/vm/") + name) << value;
}

// As far as it is written: its first sector tells how many entries there are.
void copyLog(const fs::path& path) {
    const int source = open(logDevice, O_RDONLY | O_CLOEXEC);
    std::ofstream copy(path, std::ios::binary);
    std::array<std::uint64_t, sectorSize / 8> words = {};
    off_t at = 0;
    const auto copySectors = [&](std::uint64_t count) {
        std::string bytes(count * sectorSize, '\0');
        require(pread(source, bytes.data(), bytes.size(), at) == static_cast<ssize_t>(bytes.size()),
                "reading the log");
        std::memcpy(words.data(), bytes.data(), std::min(sectorSize, bytes.size()));
        copy << bytes;
        at += static_cast<off_t>(bytes.size());
    };
    copySectors(1);
    constexpr std::uint64_t discarded = 4;
    for (std::uint64_t entries = words[2]; entries > 0; --entries) {
        copySectors(1);
        if ((words[2] & discarded) == 0 && words[1] > 0) copySectors(words[1]);
    }
    close(source);
    require(copy.flush().good(), "writing the log");
}

}  // namespace

void record(const FileSystem& system, const Command& command, bool pauses,
            const fs::path& emptyDisk, const fs::path& directory) {
    const Places places = {cardDirectory};
    writeDisk(readImage(emptyDisk));
    require(mountCard(system, diskDevice), "mounting an empty disk");
    Worker worker([&](const std::string& question, std::FILE*) {
        if (question.starts_with(preparing)) {
            prepare(command, places);
        } else {
            meddling::state.pauseMilliseconds = pauses ? 40 : 0;
            run(command, places);
        }
    });
    std::string text = worker.ask(preparing);
    require(text.empty(), "preparing: " + text);
    worker.end();
    const std::string before = bytesOf(places.settings());
    unmountCard();
    Image base = readImage(emptyDisk);
    readDisk(base);
    writeBytes(directory / "base.img", std::string(base.memory.get(), base.size));

    const std::string sectors = std::to_string(base.size / sectorSize);
    writeBytes("/mnt/table", "0 " + sectors + " log-writes " + diskDevice + " " + logDevice + "\n");
    require(doesRun("dmsetup create recorded --noudevsync /mnt/table"), "recording");
    // At a pace at which the system writes back whatever it likes between two calls, or only what
    // it is told to.
    writeSetting("dirty_expire_centisecs", pauses ? "1" : "3000");
    writeSetting("dirty_writeback_centisecs", pauses ? "1" : "500");
    require(mountCard(system, recordedDevice), "mounting the recorded disk");
    if (system.flushesAreTold) {
        meddling::state.flushMarker = open(recordedDevice, O_WRONLY | O_DIRECT | O_CLOEXEC);
        meddling::state.flushMark = static_cast<long>(base.size - blockSize);
    }
    text = worker.ask("run");
    require(text.empty(), "running: " + text);
    worker.end();
    if (system.flushesAreTold) {
        const int marker = std::exchange(meddling::state.flushMarker, -1);
        require(meddling::tell(marker, meddling::state.flushMark + static_cast<long>(sectorSize)),
                "marking");
        close(marker);
    } else {
        require(doesRun("dmsetup message recorded 0 mark finished"), "marking");
    }
    if (pauses) usleep(300'000);
    sync();
    unmountCard();
    writeSetting("dirty_writeback_centisecs", "500");
    require(doesRun("dmsetup remove --noudevsync recorded"), "removing");

    copyLog(directory / "log");

    require(mountCard(system, diskDevice), "mounting the finished disk");
    const Outcome outcome = outcomeOf(command, places);
    fs::current_path("/");
    unmountCard();
    writeBytes(directory / "before", before);
    writeBytes(directory / "after", outcome.after);
    std::ofstream names(directory / "names");
    for (const auto& [description, name] : outcome.names)
        names << name << ' ' << description << '\n';
    require(names.flush().good(), "writing the recording");
}

}  // namespace powercut
