#include "files/renumbering.h"

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "files/report_window.h"
#include "tests/files/file_command_answers.h"
#include "tests/files/report_test.h"
#include "tests/stand_ins/file_size_limit.h"

namespace {

namespace fs = std::filesystem;
using namespace files_tests;
using stand_ins::FileSizeLimit;
using stand_ins::world;
using Numbers = std::vector<std::uint64_t>;

class Renumbering : public ReportTest {
  protected:
    void SetUp() override {
        ReportTest::SetUp();
        device::state.renumberingEnabled = true;
    }

    static void expectWarning(bool yes) {
        world.questionAnswers.push_back(
            {"Sicherheitswarnung",
             "Das Durchnummerieren ist nicht freigeschaltet! Beim Durchnummerieren kann es zu "
             "Konflikten mit den Dateinamen der Sicherheitskopie kommen. Soll das Durchnummerieren "
             "trotzdem freigeschaltet werden?",
             yes});
    }

    static void expectQuestion(bool yes) {
        world.questionAnswers.push_back(renumberingAnswer(yes));
    }

    void renumber() {
        files::renumberTrainings(700, [this] { ++tableChanges; });
    }

    // Unlocked, confirmed, and the report closed.
    void renumberAndClose() {
        expectQuestion(true);
        expectRenumbered();
        world.events.push_back(closeEvent(services::reportWindow));
        renumber();
    }

    services::Text reportText() { return report.controls[files::reportText].text; }

    // Which file content stands under which name, "dictionary.2" left out.
    static std::map<std::string, std::string> contents() {
        std::map<std::string, std::string> found;
        for (const std::string& name : namesIn(".")) {
            if (name != "dictionary.2") found[name] = bytesOf(name);
        }
        return found;
    }
};

TEST_F(Renumbering, ClosesTheGapsInDateOrder) {
    useCard({recordOf(1, 1), recordOf(2, 2), recordOf(5, 3)});
    renumberAndClose();
    EXPECT_EQ(contents(), (std::map<std::string, std::string>{{nameOf(1), contentOf(nameOf(1))},
                                                              {nameOf(2), contentOf(nameOf(2))},
                                                              {nameOf(3), contentOf(nameOf(5))}}));
    EXPECT_EQ(numbersInIndex("dictionary.2"), (Numbers{1, 2, 3}));
    EXPECT_EQ(reportText(),
              "0000000000000001 = 0000000000000001\r"
              "0000000000000002 = 0000000000000002\r"
              "0000000000000005 = 0000000000000003\r");
    EXPECT_EQ(device::state.dictionary.size(), 3U);
    EXPECT_EQ(tableChanges, 1);
}

TEST_F(Renumbering, GoesOnFromTheEarliestTraining) {
    useCard({recordOf(0x30, 3), recordOf(0x10, 1), recordOf(0x20, 2)});
    renumberAndClose();
    EXPECT_EQ(numbersInIndex("dictionary.2"), (Numbers{0x10, 0x11, 0x12}));
    EXPECT_EQ(bytesOf(nameOf(0x11)), contentOf(nameOf(0x20)));
    EXPECT_EQ(bytesOf(nameOf(0x12)), contentOf(nameOf(0x30)));
}

TEST_F(Renumbering, TheTableIsSortedByDateFirst) {
    useCard({recordOf(1, 1), recordOf(4, 2), recordOf(7, 3)});
    std::swap(device::state.dictionary[0], device::state.dictionary[2]);
    renumberAndClose();
    EXPECT_EQ(numbersInIndex("dictionary.2"), (Numbers{1, 2, 3}));
    EXPECT_EQ(bytesOf(nameOf(2)), contentOf(nameOf(4)));
}

// No card gives such a name to the table; if one ever did, it would lead to another directory.
TEST_F(Renumbering, ANameThatIsNoTrainingsIsNotRenamed) {
    useCard({recordOf(1, 1), recordOf(5, 2), recordOf(9, 3)});
    fs::create_directory("5");
    writeBytes("precious", "precious");
    device::state.dictionary[1].fileName = "5/../precious";
    renumberAndClose();
    EXPECT_EQ(bytesOf("precious"), "precious");
    EXPECT_FALSE(fs::exists(nameOf(2)));
    EXPECT_EQ(bytesOf(nameOf(3)), contentOf(nameOf(9)));
}

TEST_F(Renumbering, UpperCaseNamesAboveTheirTurnBecomeLowerCase) {
    useCard({recordOf(0x9, 1), recordOf(0xA, 2), recordOf(0xAB, 3)});
    auto& records = device::state.dictionary;
    for (const std::size_t i : {std::size_t{1}, std::size_t{2}}) {
        std::string upper = records[i].fileName;
        for (char& character : upper)
            character = static_cast<char>(std::toupper(character));
        fs::rename(records[i].fileName, upper);
        records[i].fileName = upper;
    }
    renumberAndClose();
    EXPECT_EQ(namesIn("."), (std::set<std::string>{"dictionary.2", "0000000000000009",
                                                   "000000000000000A", "000000000000000b"}));
    EXPECT_EQ(reportText(),
              "0000000000000009 = 0000000000000009\r"
              "000000000000000A = 000000000000000a\r"
              "00000000000000AB = 000000000000000b\r");
}

TEST_F(Renumbering, CrossedNumbersLoseNoFile) {
    // The turn of 9 is 6, which a later training holds.
    useCard({recordOf(5, 1), recordOf(9, 2), recordOf(6, 3)});
    const auto before = contents();
    renumberAndClose();
    EXPECT_EQ(contents(), before);
    // The rename was refused, and loading the index gave the record the name of its file again.
    EXPECT_EQ(numbersInIndex("dictionary.2"), (Numbers{5, 9, 6}));
    EXPECT_EQ(device::state.dictionary.size(), 3U);
}

TEST_F(Renumbering, AFileThatTheIndexDoesNotKnowIsNotReplaced) {
    useCard({recordOf(1, 1), recordOf(5, 2), recordOf(8, 3)});
    writeBytes(nameOf(2), "foreign");
    renumberAndClose();
    EXPECT_EQ(contents(), (std::map<std::string, std::string>{{nameOf(1), contentOf(nameOf(1))},
                                                              {nameOf(2), "foreign"},
                                                              {nameOf(5), contentOf(nameOf(5))},
                                                              {nameOf(3), contentOf(nameOf(8))}}));
    EXPECT_EQ(numbersInIndex("dictionary.2"), (Numbers{1, 5, 3}));
}

TEST_F(Renumbering, AVanishedFileGoesUnnoticed) {
    useCard({recordOf(1, 1), recordOf(5, 2), recordOf(8, 3)});
    fs::remove(nameOf(5));
    renumberAndClose();
    EXPECT_EQ(numbersInIndex("dictionary.2"), (Numbers{1, 2, 3}));
    EXPECT_EQ(device::state.dictionary.size(), 2U);  // the second has no file to load
    EXPECT_EQ(bytesOf(nameOf(3)), contentOf(nameOf(8)));
}

TEST_F(Renumbering, NoToTheWarningKeepsItLockedAndAsksAgain) {
    useCard({recordOf(1, 1), recordOf(5, 2)});
    device::state.renumberingEnabled = false;
    const auto before = contents();
    for (int i = 0; i < 2; ++i) {
        expectWarning(false);
        renumber();
        EXPECT_FALSE(device::state.renumberingEnabled);
        EXPECT_TRUE(world.questionAnswers.empty());
    }
    EXPECT_EQ(contents(), before);
}

TEST_F(Renumbering, YesToTheWarningUnlocksForTheNextTimes) {
    useCard({recordOf(1, 1), recordOf(5, 2)});
    device::state.renumberingEnabled = false;
    expectWarning(true);
    expectQuestion(false);
    renumber();
    EXPECT_TRUE(device::state.renumberingEnabled);
    EXPECT_TRUE(fs::exists(nameOf(5)));
    renumberAndClose();
    EXPECT_TRUE(fs::exists(nameOf(2)));
}

TEST_F(Renumbering, WithASwitchThatIsNeitherOffNorOnNeitherAsksNorRenumbers) {
    useCard({recordOf(1, 1), recordOf(5, 2)});
    const auto before = contents();
    for (const int number : {5, 2, -1}) {
        device::state.renumberingEnabled = number;
        renumber();
        EXPECT_EQ(device::state.renumberingEnabled, number);
    }
    EXPECT_EQ(contents(), before);
}

TEST_F(Renumbering, NoToTheQuestionChangesNothing) {
    useCard({recordOf(1, 1), recordOf(5, 2)});
    expectQuestion(false);
    renumber();
    EXPECT_TRUE(fs::exists(nameOf(5)));
    EXPECT_EQ(numbersInIndex("dictionary.2"), (Numbers{1, 5}));
    EXPECT_TRUE(world.windows.empty());
}

TEST_F(Renumbering, WithoutAReportWindowNothingIsRenamed) {
    useCard({recordOf(1, 1), recordOf(5, 2)});
    world.windowsOpen = false;
    expectQuestion(true);
    renumber();
    EXPECT_TRUE(fs::exists(nameOf(5)));
    EXPECT_EQ(numbersInIndex("dictionary.2"), (Numbers{1, 5}));
}

TEST_F(Renumbering, AnIndexWithoutFoundTrainingsIsLeftAlone) {
    useCard({recordOf(1, 1), recordOf(5, 2)});
    fs::remove(nameOf(1));
    fs::remove(nameOf(5));
    device::loadDictionary();
    ASSERT_TRUE(device::state.dictionary.empty());
    renumberAndClose();
    EXPECT_EQ(numbersInIndex("dictionary.2"), (Numbers{1, 5}));
}

TEST_F(Renumbering, NothingElseStaysInTheDirectory) {
    useCard({recordOf(1, 1), recordOf(5, 2)});
    renumberAndClose();
    EXPECT_EQ(namesIn("."), (std::set<std::string>{"dictionary.2", nameOf(1), nameOf(2)}));
}

TEST_F(Renumbering, AnotherCardInTheSlotIsLoadedAndNotTouched) {
    useCard({recordOf(1, 1), recordOf(5, 2)});
    std::vector<device::DictionaryRecord> others = {recordOf(1, 1), recordOf(5, 7)};
    builders::writeCard(directory, others);
    const std::string index = bytesOf("dictionary.2");
    expectQuestion(true);
    renumber();
    EXPECT_EQ(bytesOf("dictionary.2"), index);
    EXPECT_TRUE(fs::exists(nameOf(5)));
    EXPECT_FALSE(fs::exists(nameOf(2)));
    EXPECT_EQ(device::state.dictionary[1].startDate, others[1].startDate);
    EXPECT_EQ(tableChanges, 1);
    EXPECT_TRUE(world.windows.empty());
}

// A full disk: nothing is renamed that could not be found again.
TEST_F(Renumbering, WithoutRoomForTheCopyOfTheIndexEveryFileKeepsItsName) {
    useCard({recordOf(1, 1), recordOf(5, 2), recordOf(8, 3)});
    const auto before = contents();
    {
        const FileSizeLimit full(100);
        renumberAndClose();
    }
    EXPECT_EQ(contents(), before);
    EXPECT_EQ(numbersInIndex("dictionary.2"), (Numbers{1, 5, 8}));
    EXPECT_EQ(device::state.dictionary.size(), 3U);
}

TEST_F(Renumbering, TheReportWindowHasItsSizes) {
    useCard({recordOf(1, 1)});
    renumberAndClose();
    EXPECT_EQ(report.title, "Dateinamen neu nummerieren");
    EXPECT_EQ(report.width, 256);
    EXPECT_EQ(report.height, 686);
    EXPECT_EQ(report.controls[files::reportText].box, (services::Box{8, 8, 238, 672}));
    EXPECT_TRUE(report.shown);
    EXPECT_EQ(report.row.owner, services::listWindow);
}

TEST_F(Renumbering, TheReportStaysUntilItIsClosedOrEscapeIsPressed) {
    useCard({recordOf(1, 1)});
    expectQuestion(true);
    expectRenumbered();
    // What happens elsewhere does not end it.
    world.events = {closeEvent(services::mainWindow), closeEvent(services::listWindow),
                    shortcutEvent(services::mainWindow, 1), shortcutEvent(services::listWindow, 1)};
    int escapeItem = -1;
    world.beforeEvent = [&](int call) {
        EXPECT_TRUE(world.windows.contains(services::reportWindow));
        escapeItem = world.windows[services::reportWindow].shortcuts.at(services::escapeKey);
        if (call == 4) world.events.push_back(shortcutEvent(services::reportWindow, escapeItem));
    };
    renumber();
    EXPECT_TRUE(world.windows.empty());
    EXPECT_EQ(world.eventsWaitedFor, 5);
}

TEST_F(Renumbering, TheReportsTextFollowsItsWindow) {
    useCard({recordOf(1, 1)});
    expectQuestion(true);
    expectRenumbered();
    world.events = {{.kind = services::EventKind::resize, .window = services::reportWindow},
                    closeEvent(services::reportWindow)};
    world.beforeEvent = [this](int call) {
        auto& window = world.windows[services::reportWindow];
        if (call == 0) services::resizeWindow(services::reportWindow, 356, 700);
        report = window;
    };
    renumber();
    EXPECT_EQ(report.controls[files::reportText].box, (services::Box{8, 8, 338, 686}));
}

TEST_F(Renumbering, IsToldDoneOnceTheIndexIsSavedAndLoaded) {
    useCard({recordOf(1, 1), recordOf(5, 2), recordOf(8, 3)});
    int told = 0;
    world.beforeMessage = [&](services::TextView title) {
        if (title == "Dateinamen neu durchnummerieren") device::state.dictionary[1].selected = 0;
        if (title != "Dateinamen") return;
        ++told;
        EXPECT_EQ(numbersInIndex("dictionary.2"), (Numbers{1, 2, 3}));
        for (const device::DictionaryRecord& record : device::state.dictionary)
            EXPECT_EQ(record.selected, 1);  // as loading leaves it
        EXPECT_EQ(tableChanges, 1);
    };
    renumberAndClose();
    EXPECT_EQ(told, 1);
}

TEST_F(Renumbering, TheReportGrowsRecordByRecord) {
    useCard({recordOf(1, 1), recordOf(5, 2), recordOf(8, 3)});
    const std::string texts[] = {"", "0000000000000001 = 0000000000000001\r",
                                 "0000000000000005 = 0000000000000002\r",
                                 "0000000000000008 = 0000000000000003\r"};
    std::string expected;
    int repaints = 0;
    world.whileRepainting = [&](int call) {
        SCOPED_TRACE(call);
        ASSERT_LT(call, 4);
        expected += texts[call];
        EXPECT_EQ(world.windows[services::reportWindow].controls[files::reportText].text, expected);
        // Renamed is what the report tells, and no more.
        EXPECT_EQ(fs::exists(nameOf(2)), call >= 2);
        EXPECT_EQ(fs::exists(nameOf(3)), call >= 3);
        ++repaints;
    };
    renumberAndClose();
    EXPECT_EQ(repaints, 4);
}

}  // namespace
