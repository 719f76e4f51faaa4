// Files of the working directory, for tests of what happens to them.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>

namespace faults_tests {

inline void writeBytes(const std::filesystem::path& path, const std::string& content) {
    std::ofstream(path, std::ios::binary) << content;
}

inline std::string bytesOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

inline std::set<std::string> namesHere() {
    std::set<std::string> found;
    for (const auto& entry : std::filesystem::directory_iterator("."))
        found.insert(entry.path().filename().string());
    return found;
}

}  // namespace faults_tests
