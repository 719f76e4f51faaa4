// The first and only program of a user-mode Linux: records what commands write to a disk, and tries
// disks on which a part of that has arrived. Started by powercut.py, which tells the jobs, one a
// line, in a file of its directory:
//
//     record FILE-SYSTEM COMMAND PACE             into the directory of that recording
//     try FILE-SYSTEM COMMAND PACE FROM TO HOW    states of its file `states`: as-is, checked or
//     both
//
// It answers in lines that begin with "@".

#include <sys/mount.h>
#include <sys/reboot.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include "tests/powercut/commands.h"
#include "tests/powercut/disk.h"
#include "tests/powercut/meddling.h"
#include "tests/powercut/recorder.h"
#include "tests/powercut/trials.h"

namespace {

using namespace powercut;

const fs::path workDirectory = "/mnt/work";

void doJob(const std::string& line) {
    std::istringstream words(line);
    std::string verb;
    std::string systemName;
    std::string commandName;
    std::string pace;
    words >> verb >> systemName >> commandName >> pace;
    const FileSystem* const system = fileSystemOfName(systemName);
    const Command* const command = commandOfName(commandName);
    require(system != nullptr && command != nullptr, "the job " + line);
    const std::string name = systemName + " " + commandName + " " + pace;
    const fs::path directory = workDirectory / (systemName + "." + commandName + "." + pace);
    if (verb == "record") {
        record(*system, *command, pace == "slow", workDirectory / (systemName + ".img"), directory);
        std::printf("@recorded %s\n", name.c_str());
    } else {
        std::size_t from = 0;
        std::size_t to = 0;
        std::string how;
        words >> from >> to >> how;
        tryStates(*system, *command, directory, name, from, to, how == "checked");
    }
    std::fflush(stdout);
}

// This kernel keeps only the narrow registers of a process that it interrupts, as it does for each
// page that is touched for the first time: nothing must copy by the wide ones.
bool keepsWhatIsCopied() {
    constexpr std::size_t size = 4 << 20;
    const std::string source(size, 'x');
    return std::string(source) == source &&
           std::string(source).find_first_not_of('x') == source.npos;
}

void doJobs() {
    mount("none", "/proc", "proc", 0, nullptr);
    mount("none", "/sys", "sysfs", 0, nullptr);
    mount("none", "/mnt", "tmpfs", 0, nullptr);
    fs::create_directories(cardDirectory);
    fs::create_directories(workDirectory);
    setenv("PATH", "/usr/sbin:/usr/bin:/sbin:/bin", 1);
    require(keepsWhatIsCopied(), "registers that are lost");
    const char* const work = std::getenv("powercut_directory");
    const char* const jobs = std::getenv("powercut_jobs");
    const char* const mistake = std::getenv("powercut_mistake");
    require(work != nullptr && jobs != nullptr, "a directory and jobs");
    require(mount("none", workDirectory.c_str(), "hostfs", 0, work) == 0, work);
    if (mistake != nullptr) {
        const auto known = meddling::mistakeOfName(mistake);
        require(known.has_value(), mistake);
        meddling::state.mistake = *known;
    }
    loadModules();
    std::ifstream lines(workDirectory / jobs);
    for (std::string line; std::getline(lines, line);)
        doJob(line);
    std::printf("@done\n");
    std::fflush(stdout);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc > 1 && std::string_view(argv[1]) == "--commands") {
        for (const Command& command : commands())
            std::printf("%s\n", std::string(command.name).c_str());
        return 0;
    }
    if (getpid() != 1) {
        std::fprintf(stderr, "powercut_guest is started by powercut.py\n");
        return 2;
    }
    doJobs();
    sync();
    reboot(RB_POWER_OFF);
    return 1;
}
