// One kill after another, and two programs on one card.
#include <cstdio>
#include <filesystem>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "device/device_state.h"
#include "device/dictionary.h"
#include "tests/faults/command_faults.h"
#include "tests/faults/fault_injector.h"

namespace {

namespace fs = std::filesystem;
using namespace command_faults;
using fault_injector::FaultKind;

// One interruption after another, before anything could be repaired, and at every place.
class TwoMisfortunes : public CommandFaults {
  protected:
    using Command = std::function<void()>;

    // The program starts, and does this until it is killed.
    void startUntilKilled(const Command& command, int call) {
        const int status = statusOf([&] {
            forgetEverything();
            fs::current_path(tree);
            if (call != never) fault_injector::arm({.kind = FaultKind::kill, .at = call});
            device::loadDictionary();
            chooseTrainings();
            command();
            return 0;
        });
        wasKilled = status == fault_injector::killedStatus;
        ASSERT_TRUE(wasKilled || status == 0);
    }

    void tryPairs(const char* what, const std::vector<Training>& list, const Command& first,
                  const Command& second) {
        const int stride = isFull() ? 1 : 41;
        int pairs = 0;
        bool firstWasKilled = true;
        for (int i = 0; firstWasKilled; ++i) {
            bool secondWasKilled = true;
            for (int k = i % stride; secondWasKilled; k += stride) {
                SCOPED_TRACE("killed at call " + std::to_string(i) + ", then at call " +
                             std::to_string(k));
                makeCard(list);
                startUntilKilled(first, i);
                firstWasKilled = wasKilled;
                startUntilKilled(second, k);
                secondWasKilled = wasKilled;
                expectEveryTraining();
                ++pairs;
                if (HasFailure()) return;
            }
        }
        std::printf("%-32s %5d pairs of kills survived\n", what, pairs);
        RecordProperty("pairs", pairs);
    }

    static constexpr int never = -1;

    bool wasKilled = false;
};

TEST_F(TwoMisfortunes, DeletingThenRenumberingLoseNothing) {
    tryPairs("delete, then renumber", {{1}, {5, true}, {6}, {7}}, deleteTrainings,
             renumberTrainings);
}

TEST_F(TwoMisfortunes, RenumberingThenDeletingLoseNothing) {
    foreign = {{nameOf(2), "foreign"}};
    tryPairs("renumber, then delete", {{1}, {5}, {0x20, true}, {0x21}}, renumberTrainings,
             deleteTrainings);
}

TEST_F(TwoMisfortunes, RenumberingByCopiesTwiceLosesNothing) {
    pretendFat();
    tryPairs("renumber by copies, twice", {{1}, {5}, {6}, {7}}, renumberTrainings,
             renumberTrainings);
}

TEST_F(TwoMisfortunes, RenumberingTwiceLosesNothing) {
    fileless = {3};
    tryPairs("renumber, then renumber", {{1}, {5}, {6}, {7}}, renumberTrainings, renumberTrainings);
}

// What is listed stays as it was while another program starts on the same card and is killed.
class OtherProgram : public TwoMisfortunes {};

TEST_F(OtherProgram, KilledBesideAListLeavesNothingToLose) {
    foreign = {{nameOf(4), "foreign"}};
    const std::vector<Training> list = {{1}, {5}, {6, true}, {7}};
    for (const Command& ours : {Command(deleteTrainings), Command(renumberTrainings)}) {
        wasKilled = true;
        for (int call = 0; wasKilled; ++call) {
            SCOPED_TRACE("killed at call " + std::to_string(call));
            makeCard(list);
            openCard();
            const device::DeviceState listed = std::move(device::state);
            startUntilKilled(renumberTrainings, call);
            fs::current_path(tree);
            device::state = listed;
            ours();
            expectEveryTraining();
            ASSERT_FALSE(HasFailure());
        }
    }
}

// A second program does all of its work between two calls of the first.
TEST_F(OtherProgram, AtWorkInTheMiddleOfOursLosesNothing) {
    foreign = {{nameOf(4), "foreign"}};
    const std::vector<Training> list = {{1}, {5}, {6, true}, {7}, {9}};
    const Command commands[] = {deleteTrainings, renumberTrainings, [] {}};
    int pairs = 0;
    for (const Command& ours : commands) {
        for (const Command& theirs : commands) {
            bool happened = true;
            for (int call = isFull() ? 0 : pairs % 3; happened; call += isFull() ? 1 : 3) {
                SCOPED_TRACE("at call " + std::to_string(call));
                makeCard(list);
                forgetEverything();
                fs::current_path(tree);
                happened = false;
                fault_injector::arm({.kind = FaultKind::interrupt, .at = call, .meanwhile = [&] {
                                         happened = true;
                                         startUntilKilled(theirs, never);
                                     }});
                device::loadDictionary();
                chooseTrainings();
                ours();
                fault_injector::disarm();
                expectEveryTraining();
                ASSERT_FALSE(HasFailure());
                ++pairs;
            }
        }
    }
    std::printf("%-32s %5d places survived\n", "two programs on one card", pairs);
    RecordProperty("places", pairs);
}

}  // namespace
