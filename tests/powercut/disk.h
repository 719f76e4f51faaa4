// The guest's disk: in memory, written and read as a whole, and mounted as a card.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "tests/powercut/commands.h"

namespace powercut {

inline constexpr const char* diskDevice = "/dev/ram0";
inline constexpr const char* logDevice = "/dev/ram1";
inline constexpr std::size_t sectorSize = 512;
inline constexpr std::string_view cardDirectory = "/mnt/card";

struct FileSystem {
    std::string_view name;
    const char* type;
    const char* options;
    const char* check;
    bool flushesAreTold = false;  // and not only asked of the disk: see recording.py
};

// Null for a name that is none.
const FileSystem* fileSystemOfName(std::string_view name);

// Ends the guest with an error when the thing is not done.
void require(bool done, const std::string& what);

// A program and its arguments, without blanks of their own; what it says goes nowhere.
bool doesRun(const std::string& line);

void loadModules();

// Aligned, for transfers past the page cache; children have no part in it, as every page that they
// share would have to be told to the host.
struct Image {
    explicit Image(std::size_t bytes);

    std::size_t size;
    std::unique_ptr<char, std::function<void(char*)>> memory;
};

Image readImage(const fs::path& path);

void writeDisk(const Image& image);
void readDisk(Image& image);

bool mountCard(const FileSystem& system, const char* device);
void unmountCard();

// As Linux makes a file system whose mistakes it comes across.
bool isReadOnly(const fs::path& root);

}  // namespace powercut
