#include "tests/powercut/commands.h"

#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <random>

#include "app/app_state.h"
#include "charts/chart_state.h"
#include "charts/values/chart_options.h"
#include "device/device_state.h"
#include "device/device_tree.h"
#include "device/dictionary.h"
#include "device/training_file.h"
#include "export/csv_export.h"
#include "export/export_state.h"
#include "files/backup_copy.h"
#include "files/deletion.h"
#include "files/renumbering.h"
#include "services/menus.h"
#include "services/text/numbers.h"
#include "settings/saving.h"
#include "settings/settings_state.h"
#include "tests/builders/card_builder.h"
#include "tests/powercut/meddling.h"
#include "tests/stand_ins/stand_ins.h"

namespace powercut {

namespace {

using services::operator""_l1;
using stand_ins::world;

const std::vector<Command> allCommands = {
    {"delete-some", Kind::deletion, {{1}, {2, true}, {3}, {4, true}, {5}, {6}}},
    {"delete-all-but-one", Kind::deletion, {{1, true}, {2, true}, {3}, {4, true}, {5, true}}},
    {"renumber-gaps", Kind::renumbering, {{1}, {5}, {9}, {0x20}}},
    {"renumber-used", Kind::renumbering, {{1}, {5}, {0x20}, {0x21}, {0x22}, {0x23}}},
    {"renumber-crossed", Kind::renumbering, {{5}, {9}, {6}, {0x30}}},
    {"renumber-foreign",
     Kind::renumbering,
     {{1}, {5}, {8}, {9}},
     {{nameOf(2), "foreign"}, {nameOf(4), "another"}}},
    {"renumber-fileless", Kind::renumbering, {{1}, {5}, {8}, {9}}, {}, {2, 6, 0x40}},
    {"backup-new", Kind::backup, {{1}, {5}, {9}, {12}}},
    {"backup-grow", Kind::backup, {{1}, {5}, {9}, {12}, {13}}, {}, {}, 2},
    {"backup-interrupted", Kind::backup, {{1}, {5}, {9}, {12}, {13}}, {}, {}, 1, true},
    {"settings-new", Kind::settings, {{1}, {2}}},
    {"settings-over", Kind::settings, {{1}, {2}}, {}, {}, 0, true},
    {"export-index", Kind::indexExport, {{1}, {5}, {9}, {12}}},
    {"export-training", Kind::trainingExport, {{1}, {5}, {9}, {12}}},
};

// What a program would do that takes every temporary name for its own and unshared.
void deleteLeftovers(const fs::path& directory) {
    if (meddling::state.mistake != meddling::Mistake::leftoverDeleted) return;
    std::vector<fs::path> leftovers;
    std::error_code error;
    for (const fs::path& path : fs::directory_iterator(directory, error)) {
        const std::string name = path.filename().string();
        if (name.find(".kurbelbuch-") != name.npos && !name.ends_with("-neu"))
            leftovers.push_back(path);
    }
    for (const fs::path& path : leftovers)
        fs::remove(path, error);
}

void forgetEverything() {
    app::state = {};
    device::state = {};
    charts::state = {};
    settings::state = {};
    exporting::state = {};
    world = {};
    world.anyMessageIsFine = true;
    services::menuState = {};
}

std::string randomBytes(unsigned seed, std::size_t length) {
    std::mt19937 random(seed);
    std::string bytes(length, '\0');
    for (char& byte : bytes)
        byte = static_cast<char>(random());
    return bytes;
}

// A day after the one before it.
std::string encodeRecord(std::uint64_t number, const std::string& description, std::size_t place) {
    device::DictionaryRecord record = builders::makeRecord(number);
    record.description = description;
    record.startDate = 1'356'998'400 + static_cast<std::int32_t>(place) * 86'400;
    return std::string(device::encodeDictionaryRecord(record));
}

void writeIndex(const Command& command, const Places& places) {
    // Not in the order of their dates, so that a save changes the index.
    std::string index;
    for (std::size_t i = command.fileless.size(); i-- > 0;)
        index += encodeRecord(command.fileless[i], "without a file", command.trainings.size() + i);
    for (std::size_t i = command.trainings.size(); i-- > 0;)
        index += recordOf(command, i);
    writeBytes(places.tree() / "dictionary.2", index);
}

void prepareBackup(const Command& command, const Places& places) {
    fs::create_directories(places.backup());
    const std::string index = bytesOf(places.tree() / "dictionary.2");
    for (std::size_t i = 0; i < command.backedUp; ++i) {
        const std::string name = nameOf(command.trainings[command.trainings.size() - 1 - i].number);
        fs::copy_file(places.tree() / name, places.backup() / name);
    }
    if (command.backedUp > 0)
        writeBytes(places.backup() / "dictionary.2", index.substr(0, command.backedUp * 152));
}

// Runs the command in another process that ends at that call; the number of its calls.
int runUntil(int call, const Command& command, const Places& places) {
    void* const shared =
        mmap(nullptr, sizeof(int), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (shared == MAP_FAILED) _exit(1);
    int* const calls = static_cast<int*>(shared);
    const pid_t child = fork();
    if (child == 0) {
        meddling::state.calls = calls;
        meddling::state.endAtCall = call;
        run(command, places);
        _exit(0);
    }
    waitpid(child, nullptr, 0);
    const int count = *calls;
    munmap(shared, sizeof(int));
    return count;
}

// Cut off after two thirds, with a piece of the record that comes next behind the others.
void interruptBackup(const Command& command, const Places& places) {
    const int calls = runUntil(-1, command, places);
    fs::remove_all(places.root / "sicherung");
    prepareBackup(command, places);
    runUntil(calls * 2 / 3, command, places);
    std::ofstream(places.backup() / "dictionary.2", std::ios::binary | std::ios::app)
        << recordOf(command, 0).substr(0, 70);
}

void saveSettings(const Places& places, int width, const char* backup) {
    fs::current_path(places.tree());
    device::state.programDirectory = places.settings().parent_path().string() + "/";
    device::state.backupDirectory = backup;
    settings::state.windowWidth = width;
    settings::state.windowHeight = 600;
    charts::state.colours = charts::builtInColours();
    settings::saveStartSettings();
}

void chooseTrainings(const Command& command) {
    for (device::DictionaryRecord& record : device::state.dictionary) {
        record.selected = 0;
        for (std::size_t i = 0; i < command.trainings.size(); ++i) {
            if (command.trainings[i].chosen && record.description == descriptionOf(i))
                record.selected = 1;
        }
    }
}

void answerSaveFile(const char* name, const Places& places) {
    world.saveFileAnswers.push_back({services::Text("Name und Ort der CSV-Datei wählen"_l1), "",
                                     name, places.exported().string()});
}

}  // namespace

std::span<const Command> commands() {
    return allCommands;
}

const Command* commandOfName(std::string_view name) {
    for (const Command& command : commands()) {
        if (command.name == name) return &command;
    }
    return nullptr;
}

std::string nameOf(std::uint64_t number) {
    return services::numberToHexadecimal16(number);
}

std::string descriptionOf(std::size_t place) {
    return "Training " + std::to_string(place);
}

std::string contentOf(std::size_t place) {
    constexpr std::size_t samples[] = {30, 12, 55, 3, 41, 23};
    return randomBytes(static_cast<unsigned>(place), 44 * samples[place % std::size(samples)]);
}

std::string bytesOf(const fs::path& path) {
    std::string bytes;
    std::FILE* const file = std::fopen(path.c_str(), "rb");
    if (file == nullptr) return bytes;
    char block[4096];
    for (std::size_t count = 0; (count = std::fread(block, 1, sizeof block, file)) > 0;)
        bytes.append(block, count);
    std::fclose(file);
    return bytes;
}

std::string recordOf(const Command& command, std::size_t place) {
    return encodeRecord(command.trainings[place].number, descriptionOf(place), place);
}

bool writeBytes(const fs::path& path, const std::string& bytes) {
    std::ofstream file(path, std::ios::binary);
    file << bytes;
    return file.flush().good();
}

std::string pictureContent() {
    return randomBytes(1000, 5000);
}

void prepare(const Command& command, const Places& places) {
    for (const fs::path& directory :
         {places.tree(), places.settings().parent_path(), places.root / "fotos"})
        fs::create_directories(directory);
    writeBytes(places.root / pictureName, pictureContent());
    for (std::size_t i = 0; i < command.trainings.size(); ++i)
        writeBytes(places.tree() / nameOf(command.trainings[i].number), contentOf(i));
    for (const auto& [name, content] : command.foreign)
        writeBytes(places.tree() / name, content);
    writeIndex(command, places);
    if (command.kind == Kind::backup) {
        prepareBackup(command, places);
        if (command.interruptedBefore) interruptBackup(command, places);
    }
    if (command.kind == Kind::settings && command.interruptedBefore) {
        startIn(places.tree());
        saveSettings(places, 777, "/alt/sicherung/");
    }
}

bool startIn(const fs::path& directory) {
    forgetEverything();
    deleteLeftovers(directory);
    std::error_code error;
    fs::current_path(directory, error);
    if (error) return false;
    if (device::locateDeviceTree() != device::TreeLocation::current) return false;
    device::loadDictionary();
    return true;
}

void run(const Command& command, const Places& places) {
    deleteLeftovers(places.backup());
    startIn(places.tree());
    chooseTrainings(command);
    switch (command.kind) {
        case Kind::deletion:
            world.questionAnswers = {
                {services::Text("Lösche Datei"_l1),
                 services::Text("Sollen die ausgewählten Dateien wirklich gelöscht werden?"_l1),
                 true}};
            files::deleteChosenTrainings();
            break;
        case Kind::renumbering:
            device::state.renumberingEnabled = true;
            world.questionAnswers = {{"Dateinamen neu durchnummerieren",
                                      "Sollen die Dateinamen neu durchnummeriert werden?", true}};
            world.events = {{.kind = services::EventKind::close, .window = services::reportWindow}};
            files::renumberTrainings(700, [] {});
            break;
        case Kind::backup:
            device::state.backupDirectory = places.backup().string() + "/";
            world.events = {{.kind = services::EventKind::close, .window = services::reportWindow}};
            files::copyToBackup(700, [] {});
            break;
        case Kind::settings:
            saveSettings(places, 1234, "/neu/");
            break;
        case Kind::indexExport:
            for (device::DictionaryRecord& record : device::state.dictionary)
                record.selected = 1;
            answerSaveFile("Dicitonary.csv", places);
            exporting::exportIndex();
            break;
        case Kind::trainingExport:
            device::state.dictionary.front().selected = 1;
            device::loadTraining();
            answerSaveFile("0001  01_01_2013 00_00_00   60min   25,0km  Training 0.csv", places);
            exporting::exportTraining();
            break;
    }
}

}  // namespace powercut
