// Commands that write, with every one of their system calls failing, and with the process killed at
// every one of them. After each the program starts again, and every training must be there.
//
// KURBELBUCH_FAULTS=full tries every fault at every call; else the kills, and a part of the rest.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "tests/stand_ins/stand_ins.h"

namespace command_faults {

using Contents = std::map<std::string, std::string>;  // by description

// The name of a training file.
std::string nameOf(std::uint64_t number);

struct Training {
    std::uint64_t number = 0;
    bool chosen = false;
};

// By the training's place in the card's list, whatever its file is called later.
std::string descriptionOf(std::size_t place);

bool isFull();

// What the user does with the chosen trainings, or with all.
void deleteTrainings();
void renumberTrainings();

class CommandFaults : public stand_ins::StandInTest {
  protected:
    void SetUp() override;
    void TearDown() override;

    // The card and the backup are on FAT, until the end of the test.
    void pretendFat();

    static void forgetEverything();

    // A card of these trainings, of the records without a file and of the foreign files.
    void makeCard(const std::vector<Training>& list);

    // The program has started on the card, and what is chosen is chosen.
    void openCard();

    // By what they are, and not by their place in a list of which some may be missing.
    void chooseTrainings() const;

    // What must hold on the card after whatever happened.
    void expectEveryTraining();

    // Runs `work` in a process of its own that ends with the status it returns. That status, or -1
    // when the process did not come to an end of its own, which fails the test.
    static int statusOf(const std::function<int()>& work);

    // Runs `run` as often as there are faults, each time on what `prepare` makes, and has `check`
    // look at what is left.
    void tryFaults(const char* command, const std::function<void()>& prepare,
                   const std::function<void()>& run, const std::function<void()>& check);

    // On FAT that stays for good: its bytes may be those of a finished file.
    bool isSetAside(std::string_view name) const;

    bool isFat = false;
    std::filesystem::path card;
    std::filesystem::path tree;
    std::filesystem::path backup;
    std::vector<Training> trainings;
    Contents foreign;                     // files that the index does not know, by name
    std::vector<std::uint64_t> fileless;  // records that have no file
};

}  // namespace command_faults
