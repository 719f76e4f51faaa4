// The first and only program of a user-mode Linux: records what commands write to a disk, and tries
// disks on which a part of that has arrived. Started by powercut.py, which tells the jobs, one a
// line, in the file `jobs` of its directory:
//
//     record FILE-SYSTEM COMMAND PACE    into the directory of that recording
//     try FILE-SYSTEM COMMAND PACE FROM TO HOW    states of its file `states`, as-is and/or checked
//
// It answers in lines that begin with "@".

#include <fcntl.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/mount.h>
#include <sys/reboot.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/syscall.h>
#include <sys/utsname.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <sstream>

#include "tests/powercut/commands.h"
#include "tests/powercut/judging.h"
#include "tests/powercut/meddling.h"

namespace {

using namespace powercut;

constexpr const char* disk = "/dev/ram0";
constexpr const char* log = "/dev/ram1";
constexpr std::size_t sectorSize = 512;
constexpr unsigned secondsForOneState = 60;
constexpr uid_t rider = 1000;
const fs::path cardDirectory = "/mnt/card";
const fs::path workDirectory = "/mnt/work";

struct FileSystem {
    std::string_view name;
    const char* type;
    const char* options;
    const char* check;
};

// As a desktop mounts them.
constexpr const char* vfatOptions =
    "uid=1000,gid=1000,fmask=0022,dmask=0077,shortname=mixed,utf8,flush,errors=remount-ro";
constexpr FileSystem fileSystems[] = {
    {"fat16", "vfat", vfatOptions, "fsck.vfat -a"},
    {"fat32", "vfat", vfatOptions, "fsck.vfat -a"},
    {"ext4", "ext4", "", "e2fsck -fy"},
    {"ext4-no-journal", "ext4", "", "e2fsck -fy"},
};

[[noreturn]] void giveUp(const std::string& what) {
    std::printf("@error %s: %s\n", what.c_str(), std::strerror(errno));
    std::fflush(stdout);
    sync();
    reboot(RB_POWER_OFF);
    _exit(1);
}

void require(bool done, const std::string& what) {
    if (!done) giveUp(what);
}

// Words without blanks of their own; what it says goes nowhere. Spawned, as copying this process
// takes longer than the program runs.
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

// Aligned, for transfers past the page cache; children have no part in it, as every page that they
// share would have to be told to the host.
struct Image {
    explicit Image(std::size_t bytes)
        : size(bytes),
          memory(static_cast<char*>(mmap(nullptr, bytes, PROT_READ | PROT_WRITE,
                                         MAP_PRIVATE | MAP_ANONYMOUS, -1, 0)),
                 [bytes](char* pages) { munmap(pages, bytes); }) {
        require(memory.get() != MAP_FAILED && madvise(memory.get(), bytes, MADV_DONTFORK) == 0,
                "memory");
    }

    std::size_t size;
    std::unique_ptr<char, std::function<void(char*)>> memory;
};

Image readImage(const fs::path& path) {
    Image image(fs::file_size(path));
    std::ifstream(path, std::ios::binary)
        .read(image.memory.get(), static_cast<std::streamsize>(image.size));
    return image;
}

void writeDisk(const Image& image) {
    const int device = open(disk, O_WRONLY | O_DIRECT | O_CLOEXEC);
    require(pwrite(device, image.memory.get(), image.size, 0) == static_cast<ssize_t>(image.size),
            "writing the disk");
    close(device);
}

void readDisk(Image& image) {
    const int device = open(disk, O_RDONLY | O_DIRECT | O_CLOEXEC);
    require(pread(device, image.memory.get(), image.size, 0) == static_cast<ssize_t>(image.size),
            "reading the disk");
    close(device);
}

bool mountCard(const FileSystem& system, const char* device) {
    return mount(device, cardDirectory.c_str(), system.type, MS_NOSUID | MS_NODEV,
                 system.options) == 0;
}

void unmountCard() {
    require(umount(cardDirectory.c_str()) == 0, "unmounting");
}

// Runs it as the rider in a process of its own; what it has written into the file, or that it came
// to a bad end.
std::string textOfChild(const std::function<void(std::FILE*)>& work) {
    int ends[2] = {};
    require(pipe(ends) == 0, "a pipe");
    std::fflush(stdout);
    const pid_t child = fork();
    require(child >= 0, "a process");
    if (child == 0) {
        close(ends[0]);
        std::FILE* const out = fdopen(ends[1], "w");
        require(setgid(rider) == 0 && setuid(rider) == 0, "a rider");
        alarm(secondsForOneState);
        try {
            work(out);
        } catch (const std::exception& error) {
            std::fprintf(out, "L %s\n", error.what());
        }
        std::fclose(out);
        _exit(0);
    }
    close(ends[1]);
    std::string text;
    std::array<char, 4096> block = {};
    for (ssize_t count = 0; (count = read(ends[0], block.data(), block.size())) > 0;)
        text.append(block.data(), static_cast<std::size_t>(count));
    close(ends[0]);
    int status = 0;
    waitpid(child, &status, 0);
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0)
        text += "L the program came to a bad end (" + std::to_string(status) + ")\n";
    return text;
}

void writeSetting(const char* name, const char* value) {
    std::ofstream(std::string("/proc/sys/vm/") + name) << value;
}

void record(const FileSystem& system, const Command& command, bool pauses,
            const fs::path& directory) {
    const Places places = {cardDirectory};
    writeDisk(readImage(workDirectory / (std::string(system.name) + ".img")));
    require(mountCard(system, disk), "mounting an empty disk");
    std::string text = textOfChild([&](std::FILE*) { prepare(command, places); });
    require(text.empty(), "preparing: " + text);
    const std::string before = bytesOf(places.settings());
    unmountCard();
    Image base = readImage(workDirectory / (std::string(system.name) + ".img"));
    readDisk(base);
    writeBytes(directory / "base.img", std::string(base.memory.get(), base.size));

    const std::string sectors = std::to_string(base.size / sectorSize);
    writeBytes("/mnt/table", "0 " + sectors + " log-writes " + disk + " " + log + "\n");
    require(doesRun("dmsetup create recorded --noudevsync /mnt/table"), "recording");
    // At a pace at which the system writes back whatever it likes between two calls, or only what
    // it is told to.
    writeSetting("dirty_expire_centisecs", pauses ? "1" : "3000");
    writeSetting("dirty_writeback_centisecs", pauses ? "1" : "500");
    require(mountCard(system, "/dev/dm-0"), "mounting the recorded disk");
    text = textOfChild([&](std::FILE*) {
        meddling::state.pauseMilliseconds = pauses ? 40 : 0;
        run(command, places);
    });
    require(text.empty(), "running: " + text);
    require(doesRun("dmsetup message recorded 0 mark finished"), "marking");
    if (pauses) usleep(300'000);
    sync();
    unmountCard();
    writeSetting("dirty_writeback_centisecs", "500");
    require(doesRun("dmsetup remove --noudevsync recorded"), "removing");

    // The log's own first sector tells how many entries there are, each its own.
    const int source = open(log, O_RDONLY | O_CLOEXEC);
    std::ofstream copy(directory / "log", std::ios::binary);
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

    require(mountCard(system, disk), "mounting the finished disk");
    const Outcome outcome = outcomeOf(command, places);
    fs::current_path("/");
    unmountCard();
    writeBytes(directory / "before", before);
    writeBytes(directory / "after", outcome.after);
    std::ofstream names(directory / "names");
    for (const auto& [description, name] : outcome.names)
        names << name << ' ' << description << '\n';
    require(copy.flush().good() && names.flush().good(), "writing the recording");
}

struct Recording {
    Image base;
    std::string sectors;  // each 8 bytes of its number, and its content
    Outcome outcome;
};

Recording readRecording(const fs::path& directory) {
    Recording recording = {readImage(directory / "base.img"), bytesOf(directory / "sectors"), {}};
    recording.outcome.before = bytesOf(directory / "before");
    recording.outcome.after = bytesOf(directory / "after");
    std::ifstream names(directory / "names");
    for (std::string name; names >> name;) {
        std::string description;
        std::getline(names >> std::ws, description);
        recording.outcome.names.emplace(description, name);
    }
    return recording;
}

struct State {
    std::string name;  // "17:19,20": the first 17 recorded sectors, and two later ones
    bool isFinished = false;
};

void applySector(Image& image, const Recording& recording, std::size_t index) {
    constexpr std::size_t step = 8 + sectorSize;
    std::uint64_t sector = 0;
    std::memcpy(&sector, recording.sectors.data() + index * step, 8);
    require((sector + 1) * sectorSize <= image.size, "a sector on the disk");
    std::memcpy(image.memory.get() + sector * sectorSize,
                recording.sectors.data() + index * step + 8, sectorSize);
}

void makeState(Image& image, const Recording& recording, const State& state) {
    std::memcpy(image.memory.get(), recording.base.memory.get(), image.size);
    std::istringstream text(state.name);
    std::size_t prefix = 0;
    text >> prefix;
    for (std::size_t i = 0; i < prefix; ++i)
        applySector(image, recording, i);
    char separator = 0;
    for (std::size_t i = 0; text >> separator >> i;)
        applySector(image, recording, i);
    writeDisk(image);
}

// Every sector of the training is somewhere on the disk.
bool isOnDisk(const Image& image, std::size_t place) {
    const std::string content = contentOf(place);
    for (std::size_t at = 0; at < content.size(); at += sectorSize) {
        const std::size_t length = std::min(sectorSize, content.size() - at);
        bool found = false;
        for (std::size_t sector = 0; !found && sector < image.size; sector += sectorSize)
            found = std::memcmp(image.memory.get() + sector, content.data() + at, length) == 0;
        if (!found) return false;
    }
    return true;
}

// What is said of a state, line by line: L a loss, N a nameless training, W one with a name, R a
// file system that takes no writing any more.
struct Findings {
    std::vector<std::string> losses = {};
    std::set<std::size_t> nameless = {};
    std::set<std::size_t> named = {};
    bool isReadOnly = false;
};

void printJudgement(std::FILE* out, const Judgement& judgement, const char* when) {
    for (const std::string& loss : judgement.losses)
        std::fprintf(out, "L %s%s\n", loss.c_str(), when);
    for (const std::size_t place : judgement.nameless)
        std::fprintf(out, "N %zu\n", place);
}

Findings readFindings(const std::string& text) {
    Findings findings;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        const std::string rest = line.size() > 2 ? line.substr(2) : "";
        if (line[0] == 'L') findings.losses.push_back(rest);
        if (line[0] == 'N') findings.nameless.insert(std::stoul(rest));
        if (line[0] == 'W') findings.named.insert(std::stoul(rest));
        if (line[0] == 'R') findings.isReadOnly = true;
    }
    return findings;
}

// As Linux makes a file system whose mistakes it comes across.
bool isReadOnly(const fs::path& root) {
    struct statvfs status = {};
    return statvfs(root.c_str(), &status) == 0 && (status.f_flag & ST_RDONLY) != 0;
}

// A process of the rider's that answers one question after the other. Each state in a process of
// its own would take longer to make that process than to do the work.
class Worker {
  public:
    using Answer = std::function<void(const std::string& question, std::FILE* out)>;

    explicit Worker(Answer answerOfQuestion) : answer(std::move(answerOfQuestion)) {}
    Worker(const Worker&) = delete;
    Worker& operator=(const Worker&) = delete;
    ~Worker() { end(); }

    std::string ask(const std::string& question) {
        if (process < 0) begin();
        std::fprintf(questions, "%s\n", question.c_str());
        std::fflush(questions);
        std::string text;
        std::array<char, 4096> line = {};
        while (std::fgets(line.data(), line.size(), answers) != nullptr) {
            if (std::string_view(line.data()) == endOfAnswer) return text;
            text += line.data();
        }
        return text + "L the program came to a bad end (" + std::to_string(end()) + ")\n";
    }

    int end() {
        if (process < 0) return 0;
        std::fclose(questions);
        std::fclose(answers);
        int status = 0;
        waitpid(process, &status, 0);
        process = -1;
        return status;
    }

  private:
    static constexpr std::string_view endOfAnswer = ".\n";

    void begin() {
        int asked[2] = {};
        int answered[2] = {};
        require(pipe(asked) == 0 && pipe(answered) == 0, "pipes");
        std::fflush(stdout);
        process = fork();
        require(process >= 0, "a process");
        close(process == 0 ? asked[1] : asked[0]);
        close(process == 0 ? answered[0] : answered[1]);
        questions = fdopen(process == 0 ? asked[0] : asked[1], process == 0 ? "r" : "w");
        answers = fdopen(process == 0 ? answered[1] : answered[0], process == 0 ? "w" : "r");
        if (process != 0) return;
        require(setgid(rider) == 0 && setuid(rider) == 0, "a rider");
        std::array<char, 4096> line = {};
        while (std::fgets(line.data(), line.size(), questions) != nullptr) {
            alarm(secondsForOneState);
            try {
                answer(line.data(), answers);
            } catch (const std::exception& error) {
                std::fprintf(answers, "L %s\n", error.what());
            }
            alarm(0);
            // Not in the way of unmounting.
            require(chdir("/") == 0, "leaving the card");
            std::fputs(endOfAnswer.data(), answers);
            std::fflush(answers);
        }
        _exit(0);
    }

    Answer answer;
    pid_t process = -1;
    std::FILE* questions = nullptr;
    std::FILE* answers = nullptr;
};

struct Trial {
    const FileSystem& system;
    const Command& command;
    const Recording& recording;
    Image& image;
};

constexpr std::string_view firstVisit = "first";
constexpr std::string_view secondVisit = "second";

std::string questionOf(std::string_view visit, Moment moment, bool startsOnBackup,
                       const std::set<std::size_t>& named) {
    std::ostringstream question;
    question << visit << ' ' << static_cast<int>(moment) << ' ' << startsOnBackup;
    for (const std::size_t place : named)
        question << ' ' << place;
    return question.str();
}

// At the first visit the program starts twice and does the command again, at the second it starts
// twice.
void visitCard(const Trial& trial, const std::string& question, std::FILE* out) {
    const Places places = {cardDirectory};
    std::istringstream words(question);
    std::string visit;
    int moment = 0;
    bool startsOnBackup = false;
    words >> visit >> moment >> startsOnBackup;
    std::set<std::size_t> named{std::istream_iterator<std::size_t>(words), {}};
    if (visit == firstVisit) named = placesWithAName(trial.command, places);
    for (const std::size_t place : named)
        std::fprintf(out, "W %zu\n", place);
    printJudgement(out,
                   judge(trial.command, places, trial.recording.outcome,
                         static_cast<Moment>(moment), named, startsOnBackup),
                   visit == firstVisit ? "" : " (done again)");
    std::fflush(out);
    if (visit == firstVisit && !isReadOnly(places.root)) run(trial.command, places);
    if (isReadOnly(places.root)) std::fprintf(out, "R\n");
}

void judgeNameless(Findings& findings, Image& image) {
    if (findings.nameless.empty()) return;
    readDisk(image);
    for (const std::size_t place : findings.nameless) {
        if (!isOnDisk(image, place))
            findings.losses.push_back(descriptionOf(place) + " is written over");
    }
}

Findings visit(const Trial& trial, Worker& worker, const std::string& question) {
    if (!mountCard(trial.system, disk)) return {.losses = {"it can't be mounted"}};
    Findings findings = readFindings(worker.ask(question));
    if (umount(cardDirectory.c_str()) != 0) {
        // The program has left something open.
        worker.end();
        unmountCard();
    }
    judgeNameless(findings, trial.image);
    return findings;
}

// The second visit is after the card was in another slot.
Findings tryCard(const Trial& trial, Worker& worker, bool isFinished, bool startsOnBackup) {
    const Moment moment = isFinished ? Moment::finished : Moment::interrupted;
    Findings first = visit(trial, worker, questionOf(firstVisit, moment, startsOnBackup, {}));
    if (first.isReadOnly || !first.losses.empty()) return first;
    Findings second = visit(trial, worker,
                            questionOf(secondVisit, Moment::repeated, startsOnBackup, first.named));
    second.nameless.insert(first.nameless.begin(), first.nameless.end());
    return second;
}

std::string verdictOf(const Findings& findings) {
    if (findings.losses.empty()) return findings.nameless.empty() ? "whole" : "kept";
    std::string verdict = "lost";
    for (const std::string& loss : findings.losses)
        verdict += (verdict == "lost" ? " " : "; ") + loss;
    return verdict;
}

void tryStates(const FileSystem& system, const Command& command, const fs::path& directory,
               const std::string& name, std::size_t from, std::size_t to, const std::string& how) {
    const Recording recording = readRecording(directory);
    Image image(recording.base.size);
    const Trial trial = {system, command, recording, image};
    Worker worker(
        [&](const std::string& question, std::FILE* out) { visitCard(trial, question, out); });
    std::ifstream states(directory / "states");
    State state;
    for (std::size_t i = 0; i < to && states >> state.name >> state.isFinished; ++i) {
        if (i < from) continue;
        for (const bool isChecked : {false, true}) {
            if (how != "both" && (how == "checked") != isChecked) continue;
            makeState(image, recording, state);
            if (isChecked) static_cast<void>(doesRun(std::string(system.check) + " " + disk));
            const Findings findings = tryCard(trial, worker, state.isFinished, i % 2 == 1);
            std::printf("@state %s %s %s %s %s\n", name.c_str(), state.name.c_str(),
                        state.isFinished ? "finished" : "interrupted",
                        isChecked ? "checked" : "as-is", verdictOf(findings).c_str());
            std::fflush(stdout);
        }
    }
}

void doJob(const std::string& line) {
    std::istringstream words(line);
    std::string verb;
    std::string systemName;
    std::string commandName;
    std::string pace;
    words >> verb >> systemName >> commandName >> pace;
    const auto* const system = std::ranges::find(fileSystems, systemName, &FileSystem::name);
    const Command* const command = commandOfName(commandName);
    require(system != std::end(fileSystems) && command != nullptr, "the job " + line);
    const std::string name = systemName + " " + commandName + " " + pace;
    const fs::path directory = workDirectory / (systemName + "." + commandName + "." + pace);
    if (verb == "record") {
        record(*system, *command, pace == "slow", directory);
        std::printf("@recorded %s\n", name.c_str());
    } else {
        std::size_t from = 0;
        std::size_t to = 0;
        std::string how;
        words >> from >> to >> how;
        tryStates(*system, *command, directory, name, from, to, how);
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
