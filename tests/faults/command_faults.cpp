#include "tests/faults/command_faults.h"

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <set>

#include "app/app_state.h"
#include "charts/chart_state.h"
#include "device/device_state.h"
#include "device/device_tree.h"
#include "device/dictionary.h"
#include "export/export_state.h"
#include "files/deletion.h"
#include "files/renumbering.h"
#include "services/text/numbers.h"
#include "settings/settings_state.h"
#include "tests/builders/card_builder.h"
#include "tests/builders/file_bytes.h"
#include "tests/faults/fault_injector.h"
#include "tests/files/file_command_answers.h"

namespace command_faults {

namespace fs = std::filesystem;
using builders::bytesIfThere;
using builders::namesIn;
using builders::writeBytes;
using fault_injector::Fault;
using fault_injector::FaultKind;
using stand_ins::world;

namespace {

constexpr unsigned secondsForOneCommand = 30;

std::string contentOf(std::size_t place) {
    return std::string(44 * (place + 1), static_cast<char>('a' + place));
}

std::vector<Fault> faultsAt(int call) {
    std::vector<Fault> faults = {{.kind = FaultKind::kill, .at = call}};
    if (fault_injector::wasWrite(call))
        faults.push_back({.kind = FaultKind::killMidway, .at = call});
    const int errors[] = {EIO, ENOSPC, EROFS, EACCES};
    for (std::size_t i = 0; i < std::size(errors); ++i) {
        for (const bool goesOn : {false, true}) {
            // The short form tries another one at each call.
            if (!isFull() && static_cast<std::size_t>(call) % 4 != (i + (goesOn ? 2 : 0)) % 4)
                continue;
            faults.push_back(
                {.kind = FaultKind::fail, .at = call, .error = errors[i], .goesOn = goesOn});
        }
    }
    if (isFull() || fault_injector::wasWrite(call)) {
        for (const bool goesOn : {false, true})
            faults.push_back({.kind = FaultKind::shorten, .at = call, .goesOn = goesOn});
    }
    return faults;
}

std::string textOf(const Fault& fault) {
    static constexpr const char* kinds[] = {"none", "kill", "kill midway", "fail", "shorten"};
    std::string text = kinds[static_cast<int>(fault.kind)];
    if (fault.kind == FaultKind::fail) text += std::string(" ") + strerrorname_np(fault.error);
    return text + (fault.goesOn ? " from call " : " at call ") + std::to_string(fault.at) + " (" +
           fault_injector::nameOfCall(fault.at) + ")";
}

}  // namespace

std::string nameOf(std::uint64_t number) {
    return services::numberToHexadecimal16(number);
}

std::string descriptionOf(std::size_t place) {
    return "Training " + std::to_string(place);
}

bool isFull() {
    const char* extent = std::getenv("KURBELBUCH_FAULTS");
    return extent != nullptr && std::string_view(extent) == "full";
}

void deleteTrainings() {
    world.questionAnswers = {files_tests::deletionAnswer(true)};
    files::deleteChosenTrainings();
}

void renumberTrainings() {
    device::state.renumberingEnabled = true;
    world.questionAnswers = {files_tests::renumberingAnswer(true)};
    world.events = {{.kind = services::EventKind::close, .window = services::reportWindow}};
    files::renumberTrainings(700, [] {});
}

void CommandFaults::SetUp() {
    StandInTest::SetUp();
    card = directory / "karte";
    tree = card / "data/result/ergo_bike";
    backup = directory / "sicherung/data/result/ergo_bike";
}

void CommandFaults::TearDown() {
    fault_injector::pretendFat(false);
    forgetEverything();
    StandInTest::TearDown();
}

bool CommandFaults::isSetAside(std::string_view name) const {
    return isFat && name.find(".kurbelbuch-") != name.npos && name.find(".rest") != name.npos;
}

void CommandFaults::pretendFat() {
    isFat = true;
    fault_injector::pretendFat(true);
}

void CommandFaults::forgetEverything() {
    app::state = {};
    device::state = {};
    charts::state = {};
    settings::state = {};
    exporting::state = {};
    world = {};
    world.anyMessageIsFine = true;
    services::menuState = {};
}

void CommandFaults::makeCard(const std::vector<Training>& list) {
    fs::remove_all(card);
    trainings = list;
    std::vector<device::DictionaryRecord> records;
    const auto addRecord = [&](std::uint64_t number, const std::string& description) {
        device::DictionaryRecord record = builders::makeRecord(number);
        record.description = description;
        record.startDate = 1'356'998'400 + static_cast<std::int32_t>(records.size()) * 86'400;
        records.push_back(record);
    };
    for (std::size_t i = 0; i < list.size(); ++i)
        addRecord(list[i].number, descriptionOf(i));
    for (const std::uint64_t number : fileless)
        addRecord(number, "without a file");
    // Not in the order of their dates, so that a save changes the index.
    std::reverse(records.begin(), records.end());
    builders::writeCard(card, records);
    for (const std::uint64_t number : fileless)
        fs::remove(tree / nameOf(number));
    for (std::size_t i = 0; i < list.size(); ++i)
        writeBytes(tree / nameOf(list[i].number), contentOf(i));
    for (const auto& [name, content] : foreign)
        writeBytes(tree / name, content);
}

void CommandFaults::openCard() {
    forgetEverything();
    fs::current_path(tree);
    device::loadDictionary();
    ASSERT_EQ(device::state.dictionary.size(), trainings.size());
    chooseTrainings();
}

void CommandFaults::chooseTrainings() const {
    for (device::DictionaryRecord& record : device::state.dictionary) {
        record.selected = 0;
        for (std::size_t i = 0; i < trainings.size(); ++i) {
            if (trainings[i].chosen && record.description == descriptionOf(i)) record.selected = 1;
        }
    }
}

void CommandFaults::expectEveryTraining() {
    Contents listed;
    for (int start = 0; start < 2; ++start) {
        forgetEverything();
        fs::current_path(tree);
        ASSERT_EQ(device::locateDeviceTree(), device::TreeLocation::current);
        device::loadDictionary();
        Contents now;
        for (const device::DictionaryRecord& record : device::state.dictionary) {
            EXPECT_TRUE(now.emplace(record.description, record.fileName).second)
                << record.description << " is listed twice";
        }
        if (start == 1) {
            EXPECT_EQ(now, listed) << "the second start lists something else";
        }
        listed = now;
    }
    EXPECT_FALSE(listed.contains("without a file")) << listed["without a file"];
    std::set<std::string> known = {"dictionary.2"};
    for (const auto& [name, content] : foreign) {
        EXPECT_EQ(bytesIfThere(tree / name), content) << "a file of somebody else's";
        known.insert(name);
    }
    for (std::size_t i = 0; i < trainings.size(); ++i) {
        const auto found = listed.find(descriptionOf(i));
        if (found != listed.end()) {
            EXPECT_TRUE(bytesIfThere(tree / found->second) == contentOf(i))
                << found->first << " has samples that are not its own";
            known.insert(found->second);
        } else {
            EXPECT_TRUE(trainings[i].chosen) << descriptionOf(i) << " is lost";
            // Its file may be left, whole, under whatever name it had when its record went.
            for (const std::string& name : namesIn(tree)) {
                if (bytesIfThere(tree / name) == contentOf(i)) known.insert(name);
            }
        }
    }
    for (const std::string& name : namesIn(tree))
        EXPECT_TRUE(known.contains(name) || isSetAside(name)) << "left behind: " << name;
}

int CommandFaults::statusOf(const std::function<int()>& work) {
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        alarm(secondsForOneCommand);
        fault_injector::leaveProcess(work());
    }
    EXPECT_GT(child, 0);
    int status = 0;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status)) << "the program did not come to an end of its own";
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

void CommandFaults::tryFaults(const char* command, const std::function<void()>& prepare,
                              const std::function<void()>& run,
                              const std::function<void()>& check) {
    prepare();
    fault_injector::arm({});
    run();
    const int calls = fault_injector::disarm();
    check();
    ASSERT_FALSE(HasFailure()) << "without any fault";
    ASSERT_GT(calls, 0);

    int tried = 0;
    int survived = 0;
    std::vector<Fault> faults;
    for (int call = 0; call < calls; ++call)
        std::ranges::copy(faultsAt(call), std::back_inserter(faults));
    for (const Fault& fault : faults) {
        SCOPED_TRACE(textOf(fault));
        prepare();
        ASSERT_FALSE(HasFailure()) << "preparing";
        const int status = statusOf([&] {
            fault_injector::arm(fault);
            run();
            fault_injector::disarm();
            return 0;
        });
        const bool kills = fault.kind == FaultKind::kill || fault.kind == FaultKind::killMidway;
        EXPECT_EQ(status, kills ? fault_injector::killedStatus : 0);
        check();
        ++tried;
        if (HasFailure()) break;  // one is enough to look at
        ++survived;
    }
    std::printf("%-32s %4d calls  %5d faults  %5d survived\n", command, calls, tried, survived);
    RecordProperty("calls", calls);
    RecordProperty("faults", tried);
}

}  // namespace command_faults
