#include "tests/powercut/trials.h"

#include <sys/mount.h>

#include <algorithm>
#include <cstring>
#include <fstream>
#include <iterator>
#include <sstream>

#include "tests/powercut/judging.h"
#include "tests/powercut/worker.h"

namespace powercut {

namespace {

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
    std::string name;  // "17:19,21-23": the first 17 recorded sectors, and four later ones
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
    for (std::size_t first = 0; text >> separator >> first;) {
        std::size_t last = first;
        if (text.peek() == '-') text >> separator >> last;
        for (std::size_t i = first; i <= last; ++i)
            applySector(image, recording, i);
    }
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
    if (!mountCard(trial.system, diskDevice)) return {.losses = {"it can't be mounted"}};
    Findings findings = readFindings(worker.ask(question));
    if (umount(cardDirectory.data()) != 0) {
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

}  // namespace

void tryStates(const FileSystem& system, const Command& command, const fs::path& directory,
               const std::string& name, std::size_t from, std::size_t to, bool isChecked) {
    const Recording recording = readRecording(directory);
    Image image(recording.base.size);
    const Trial trial = {system, command, recording, image};
    Worker worker(
        [&](const std::string& question, std::FILE* out) { visitCard(trial, question, out); });
    std::ifstream states(directory / "states");
    State state;
    for (std::size_t i = 0; i < to && states >> state.name >> state.isFinished; ++i) {
        if (i < from) continue;
        makeState(image, recording, state);
        if (isChecked) static_cast<void>(doesRun(std::string(system.check) + " " + diskDevice));
        const Findings findings = tryCard(trial, worker, state.isFinished, i % 2 == 1);
        std::printf("@state %s %s %s %s %s\n", name.c_str(), state.name.c_str(),
                    state.isFinished ? "finished" : "interrupted", isChecked ? "checked" : "as-is",
                    verdictOf(findings).c_str());
        std::fflush(stdout);
    }
}

}  // namespace powercut
