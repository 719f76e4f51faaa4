// The end of the desktop session, in whatever the program is doing.
#include <QFileDialog>
#include <QMessageBox>
#include <QTemporaryDir>
#include <QTimer>
#include <filesystem>
#include <fstream>
#include <set>
#include <string>

#include "device/device_tree.h"
#include "device/dictionary.h"
#include "device/dictionary_record.h"
#include "files/backup_copy.h"
#include "services/controls.h"
#include "services/disk/directories.h"
#include "services/disk/endings.h"
#include "services/qt/toolkit_state.h"
#include "services/requesters.h"
#include "services/text/numbers.h"
#include "tests/windows/program_windows.h"

namespace {

namespace fs = std::filesystem;
using services::Event;
using services::EventKind;

class Quitting : public ProgramWindows {
  protected:
    void SetUp() override {
        ProgramWindows::SetUp();
        before = fs::current_path();
    }

    void TearDown() override {
        fs::current_path(before);
        services::forgetQuit();
        ProgramWindows::TearDown();
    }

    static void quit() {
        QEvent event(QEvent::Quit);
        QCoreApplication::sendEvent(qApp, &event);
    }

    static void quitSoon(int milliseconds = 0) { QTimer::singleShot(milliseconds, qApp, quit); }

    // What the program's own loop reads next, and last.
    static void expectEnd() {
        const Event event = services::waitEvent();
        EXPECT_EQ(event.kind, EventKind::menu);
        EXPECT_EQ(event.window, services::mainWindow);
        EXPECT_EQ(event.item, services::quitItem);
        EXPECT_FALSE(services::isQuitAsked());
    }

    // A card of that many trainings and an empty backup beside it.
    void useCard(int trainings) {
        const fs::path root = place.path().toStdString();
        const fs::path tree = root / "karte";
        fs::create_directories(tree);
        backup = root / "sicherung";
        fs::create_directories(backup);
        std::ofstream index(tree / "dictionary.2", std::ios::binary);
        for (int i = 1; i <= trainings; ++i) {
            device::DictionaryRecord record = training(0);
            record.fileName = services::numberToHexadecimal16(static_cast<std::uint64_t>(i));
            index << device::encodeDictionaryRecord(record);
            std::ofstream(tree / record.fileName, std::ios::binary)
                << std::string(trainingLength, static_cast<char>(i));
        }
        index.close();
        fs::current_path(tree);
        device::loadDictionary();
        ASSERT_EQ(device::state.dictionary.size(), static_cast<std::size_t>(trainings));
        device::state.backupDirectory = backup.string() + "/";
    }

    static constexpr std::size_t trainingLength = 200'000;
    QTemporaryDir place;
    fs::path backup;
    fs::path before;
};

TEST_F(Quitting, ComesToTheProgramsOwnLoopOnce) {
    quitSoon();
    expectEnd();
    quitSoon(10);
    expectEnd();
    for (const Event& event : takeWaitingEvents())
        EXPECT_NE(event.item, services::quitItem);
}

TEST_F(Quitting, ClosesEveryWindowAboveTheMainWindow) {
    for (const files::ListMode mode :
         {files::ListMode::edit, files::ListMode::chooseMany, files::ListMode::chooseOne}) {
        quitSoon(20);
        files::openTrainingList(mode, mainWidth(), mainHeight());
        expectEnd();
    }
    quitSoon(20);
    charts::editLimits(charts::ChartKind::overview, 3);
    expectEnd();
    quitSoon(20);
    app::showInfoBox();
    expectEnd();
    quitSoon(20);
    app::showHelpWindow();
    expectEnd();
}

TEST_F(Quitting, CancelsTheRequesterThatIsOpenAndThoseThatFollow) {
    quitSoon(20);
    services::showMessage("Info", "Text");
    EXPECT_TRUE(services::isQuitAsked());
    EXPECT_FALSE(services::askYesNo("Info", "Text"));
    EXPECT_TRUE(services::chooseDirectory("Ort", "/").empty());
    EXPECT_TRUE(services::chooseSaveFile("Datei", "/", "name", "*.csv").empty());
    EXPECT_EQ(services::chooseColour(0x123456), 0x123456);
    expectEnd();
    quitSoon(20);
    EXPECT_FALSE(services::askYesNo("Info", "Text"));
    expectEnd();
    quitSoon(20);
    EXPECT_TRUE(services::chooseDirectory("Ort", "/").empty());
    expectEnd();
    quitSoon(20);
    EXPECT_EQ(services::chooseColour(0x123456), 0x123456);
    expectEnd();
}

// The button of the list that opens it goes on once the requester is gone.
TEST_F(Quitting, WhileABackupDirectoryIsChosenLeavesTheCardAsItIs) {
    useCard(2);
    const auto names = [] {
        std::set<std::string> found;
        for (const auto& entry : fs::recursive_directory_iterator("."))
            found.insert(entry.path().string());
        return found;
    };
    const std::set<std::string> namesBefore = names();
    for (const bool fromList : {true, false}) {
        device::state.backupDirectory.clear();
        bool isOpen = false;
        QTimer timer;
        QObject::connect(&timer, &QTimer::timeout, [&isOpen] {
            if (isOpen) return;
            isOpen = qobject_cast<QFileDialog*>(QApplication::activeModalWidget()) != nullptr;
            if (isOpen) quit();
        });
        timer.start(1);
        if (fromList) {
            QTimer::singleShot(20, qApp, [] {
                services::Event press = {.kind = EventKind::control,
                                         .window = services::listWindow,
                                         .control = files::firstButtonControl + 1,
                                         .data = services::pressed};
                services::qt::post(press);
            });
            files::openTrainingList(files::ListMode::edit, mainWidth(), mainHeight());
        } else {
            EXPECT_FALSE(device::chooseBackupDirectory());
        }
        EXPECT_TRUE(isOpen);
        expectEnd();
        EXPECT_EQ(names(), namesBefore);
        EXPECT_EQ(device::state.backupDirectory, "");
    }
}

TEST_F(Quitting, DuringABackupLeavesWholeTrainingsAndNothingElse) {
    constexpr int trainings = 400;
    useCard(trainings);
    QTimer timer;
    bool asked = false;
    QObject::connect(&timer, &QTimer::timeout, [&] {
        if (asked || fs::is_empty(backup)) return;
        asked = true;
        quit();
    });
    timer.start(1);
    ASSERT_TRUE(services::openWindow(
        {.number = services::listWindow, .title = "Liste", .owner = services::mainWindow}));
    services::showWindow(services::listWindow);
    files::copyToBackup(mainHeight(), [] {});
    EXPECT_TRUE(asked);
    services::closeWindow(services::listWindow);
    expectEnd();

    const std::uintmax_t indexLength = fs::file_size(backup / "dictionary.2");
    const std::uintmax_t listed = indexLength / 152;
    EXPECT_EQ(indexLength % 152, 0U);
    EXPECT_GT(listed, 0U);
    EXPECT_LT(listed, static_cast<std::uintmax_t>(trainings));
    std::uintmax_t files = 0;
    for (const auto& entry : fs::directory_iterator(backup)) {
        if (entry.path().filename() == "dictionary.2") continue;
        EXPECT_EQ(entry.path().filename().string().size(), 16U) << entry.path();
        EXPECT_EQ(entry.file_size(), trainingLength);
        ++files;
    }
    EXPECT_EQ(files, listed);
}

}  // namespace
