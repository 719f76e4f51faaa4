// Directories, FIFOs, sockets, devices and links in place of every file that the program reads or
// writes, and every command that touches files on such a card. None of them waits, and nothing but
// what was chosen is lost, on the card or beyond its links.

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <fstream>
#include <iterator>

#include "app/event_loop.h"
#include "app/menu_tree.h"
#include "app/startup.h"
#include "device/index_recovery.h"
#include "device/training_sample.h"
#include "export/export_state.h"
#include "files/list_window.h"
#include "services/text/numbers.h"
#include "services/text/text.h"
#include "tests/app/app_test.h"
#include "tests/builders/card_builder.h"

namespace {

namespace fs = std::filesystem;
using services::EventKind;
using services::operator""_l1;
using stand_ins::world;

constexpr unsigned secondsForAll = 60;

struct OddFile {
    const char* kind;
    void (*make)(const fs::path& path, const fs::path& outside);
};

void makeSocket(const fs::path& path, const fs::path&) {
    // The name of a socket may be short only.
    const fs::path before = fs::current_path();
    fs::current_path(path.parent_path());
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.filename().string().copy(address.sun_path, sizeof(address.sun_path) - 1);
    const int descriptor = socket(AF_UNIX, SOCK_STREAM, 0);
    EXPECT_EQ(bind(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof(address)), 0);
    close(descriptor);
    fs::current_path(before);
}

constexpr OddFile oddFiles[] = {
    {"directory", [](const fs::path& path, const fs::path&) { fs::create_directory(path); }},
    {"full directory",
     [](const fs::path& path, const fs::path&) {
         fs::create_directory(path);
         std::ofstream(path / "inside") << "inside";
     }},
    {"fifo",
     [](const fs::path& path, const fs::path&) { EXPECT_EQ(mkfifo(path.c_str(), 0600), 0); }},
    {"socket", makeSocket},
    {"endless device",
     [](const fs::path& path, const fs::path&) { fs::create_symlink("/dev/zero", path); }},
    {"full device",
     [](const fs::path& path, const fs::path&) { fs::create_symlink("/dev/full", path); }},
    {"dangling link",
     [](const fs::path& path, const fs::path& outside) {
         fs::create_symlink(outside.parent_path() / "nowhere", path);
     }},
    {"link to itself",
     [](const fs::path& path, const fs::path&) { fs::create_symlink(path.filename(), path); }},
    {"link to a file outside",
     [](const fs::path& path, const fs::path& outside) { fs::create_symlink(outside, path); }},
    {"link to a directory outside",
     [](const fs::path& path, const fs::path& outside) {
         fs::create_symlink(outside.parent_path(), path);
     }},
};

services::Text treeTitle() {
    return services::concatenate("Wähle die SD-Karte bzw. das Daum-Verzeichnis"_l1);
}

services::Text csvTitle() {
    return services::concatenate("Name und Ort der CSV-Datei wählen"_l1);
}

class OddFiles : public AppTest {
  protected:
    void SetUp() override {
        AppTest::SetUp();
        alarm(secondsForAll);
        card = directory / "card";
        tree = card / "data/result/ergo_bike";
        outside = directory / "outside/precious";
    }

    void TearDown() override {
        alarm(0);
        world = {};
        AppTest::TearDown();
    }

    static std::string bytesOf(const fs::path& path) {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    static fs::path nameOf(std::uint64_t number) { return services::numberToHexadecimal16(number); }

    void begin() {
        fs::current_path(directory);
        fs::remove_all(card);
        fs::remove_all(outside.parent_path());
        fs::create_directories(outside.parent_path());
        std::ofstream(outside, std::ios::binary) << precious;
        std::vector<device::DictionaryRecord> records;
        for (const std::uint64_t number : {1U, 5U, 6U, 9U})
            records.push_back(builders::makeRecord(number));
        builders::writeCard(card, records, 3);
    }

    static void choose(int item) {
        app::dispatchEvent({.kind = EventKind::menu, .item = item});
        world.events.clear();
        world.questionAnswers.clear();
        world.saveFileAnswers.clear();
        world.beforeEvent = {};
    }

    static void pressInList(int button, const std::vector<int>& rows = {}) {
        world.beforeEvent = [rows](int) {
            world.windows[services::listWindow].controls[files::trainingListControl].chosen = rows;
        };
        world.events = {{.kind = EventKind::control,
                         .window = services::listWindow,
                         .control = files::firstButtonControl + button,
                         .data = services::pressed},
                        {.kind = EventKind::close, .window = services::reportWindow},
                        {.kind = EventKind::close, .window = services::listWindow}};
    }

    // The program starts, and its user does everything that touches files.
    void useProgram(const fs::path& exported) {
        app::state = {};
        charts::state = {};
        device::state = {};
        settings::state = {};
        exporting::state = {};
        world = {};
        world.anyMessageIsFine = true;
        services::menuState = {};
        fs::current_path(card);
        // A card without an index has its directory asked for.
        const stand_ins::DirectoryAnswer noOther = {treeTitle(), card.string() + "/", ""};
        const auto offerNoOther = [&noOther] { world.directoryAnswers = {noOther, noOther}; };
        offerNoOther();
        ASSERT_TRUE(app::startUp({}));
        device::state.renumberingEnabled = true;

        const auto exportAs = [&](const char* name) {
            world.saveFileAnswers = {
                {csvTitle(), exporting::state.indexDirectory, name, exported.string()}};
        };
        offerNoOther();
        pressInList(0);
        exportAs("Dicitonary.csv");
        choose(app::exportTrainingsItem);

        offerNoOther();
        world.events = {{.kind = EventKind::control,
                         .window = services::listWindow,
                         .control = files::trainingListControl,
                         .item = 1,
                         .data = services::doubleClicked},
                        {.kind = EventKind::close, .window = services::listWindow}};
        choose(app::openTrainingItem);

        offerNoOther();
        pressInList(2, {1});
        world.questionAnswers = {
            {services::Text("Lösche Datei"_l1),
             services::Text("Sollen die ausgewählten Dateien wirklich gelöscht werden?"_l1), true}};
        choose(app::editTrainingFilesItem);

        offerNoOther();
        pressInList(3);
        world.questionAnswers = {{"Dateinamen neu durchnummerieren",
                                  "Sollen die Dateinamen neu durchnummeriert werden?", true}};
        choose(app::editTrainingFilesItem);

        offerNoOther();
        choose(app::saveSettingsItem);
    }

    std::size_t regularTrainings() const {
        std::size_t count = 0;
        for (const auto& entry : fs::directory_iterator(tree)) {
            if (entry.path().filename().string().size() == 16 &&
                fs::is_regular_file(entry.symlink_status()) &&
                entry.file_size() == 3 * device::trainingSampleSize) {
                ++count;
            }
        }
        return count;
    }

    void tryAt(const fs::path& place, std::size_t trainingsLeft, bool isExport = false) {
        for (const OddFile& odd : oddFiles) {
            SCOPED_TRACE(odd.kind);
            begin();
            fs::remove(card / place);
            odd.make(card / place, outside);
            useProgram(isExport ? card / place : directory / "outside/export.csv");
            // A file that an export was sent to through a link is what its user has named.
            if (!isExport) {
                EXPECT_EQ(bytesOf(outside), precious);
            }
            for (const auto& entry : fs::directory_iterator(outside.parent_path())) {
                const std::string name = entry.path().filename();
                EXPECT_TRUE(name == "precious" || name == "export.csv" ||
                            (isExport && name == "nowhere"))
                    << name;
            }
            EXPECT_GE(regularTrainings(), trainingsLeft);
            if (HasFailure()) return;
        }
    }

    const std::string precious = "years of somebody else";
    fs::path card;
    fs::path tree;
    fs::path outside;
};

const fs::path ergoBike = "data/result/ergo_bike";

TEST_F(OddFiles, InPlaceOfTheIndexLoseNoTraining) {
    tryAt(ergoBike / "dictionary.2", 4);
}

TEST_F(OddFiles, InPlaceOfATrainingLoseNoOther) {
    tryAt(ergoBike / nameOf(5), 2);
}

TEST_F(OddFiles, InPlaceOfAFreeNameLoseNoTraining) {
    tryAt(ergoBike / nameOf(2), 3);
}

TEST_F(OddFiles, InPlaceOfTheCopyOfTheIndexLoseNoTraining) {
    tryAt(ergoBike / device::indexCopyName, 3);
    tryAt(ergoBike / device::unfinishedCopyName, 3);
}

TEST_F(OddFiles, InPlaceOfTheSettingsLoseNoTraining) {
    tryAt("Einstellungen.dat", 3);
}

TEST_F(OddFiles, InPlaceOfAnExportedFileLoseNoTraining) {
    tryAt("export.csv", 3, true);
}

}  // namespace
