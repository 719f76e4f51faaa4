// The commands whose power is cut: what lies on the card before, and how the program runs them.
// Everything lies below one root, the mounted file system.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace powercut {

namespace fs = std::filesystem;

enum class Kind { deletion, renumbering, backup, settings, indexExport, trainingExport };

struct Training {
    std::uint64_t number = 0;
    bool chosen = false;
};

struct Command {
    std::string_view name;
    Kind kind;
    std::vector<Training> trainings;                  // by start date
    std::map<std::string, std::string> foreign = {};  // name and content of files beside them
    std::vector<std::uint64_t> fileless = {};         // records without a file
    std::size_t backedUp = 0;                         // of the last trainings
    bool interruptedBefore = false;  // a backup, or settings that are there already
};

struct Places {
    fs::path root;

    fs::path tree() const { return root / "data/result/ergo_bike"; }
    fs::path backup() const { return root / "sicherung/data/result/ergo_bike"; }
    fs::path settings() const { return root / "programm/Einstellungen.dat"; }
    fs::path exported() const { return root / "export.csv"; }
};

std::span<const Command> commands();
const Command* commandOfName(std::string_view name);

std::string nameOf(std::uint64_t number);
std::string descriptionOf(std::size_t place);  // of the training at this place of the list
std::string contentOf(std::size_t place);      // no two sectors of all trainings are alike

// The record of that training, with its number on the card at first.
std::string recordOf(const Command& command, std::size_t place);

// As far as the file can be read.
std::string bytesOf(const fs::path& path);
bool writeBytes(const fs::path& path, const std::string& bytes);

// What a foreign hand has put elsewhere on the card.
inline constexpr std::string_view pictureName = "fotos/bild.jpg";
std::string pictureContent();

// Lays out the card; may end the process that it runs in.
void prepare(const Command& command, const Places& places);

// The program starts afresh in `directory`, loads its index and forgets what it knew before.
// False when there is no tree.
bool startIn(const fs::path& directory);

// The program starts and does the command to its end.
void run(const Command& command, const Places& places);

}  // namespace powercut
