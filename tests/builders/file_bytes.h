// Files of a test: written, read and listed as they are. What can't be done fails the test by an
// exception.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>

namespace builders {

inline void writeBytes(const std::filesystem::path& path, std::string_view bytes) {
    std::ofstream file(path, std::ios::binary);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    file.close();
    if (!file.good()) throw std::runtime_error("can't be written: " + path.string());
}

inline std::string bytesOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file.good()) throw std::runtime_error("can't be read: " + path.string());
    return {std::istreambuf_iterator<char>(file), {}};
}

// Of a file that may be missing: no bytes then.
inline std::string bytesIfThere(const std::filesystem::path& path) {
    return std::filesystem::exists(path) ? bytesOf(path) : std::string();
}

inline std::set<std::string> namesIn(const std::filesystem::path& directory) {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(directory))
        names.insert(entry.path().filename().string());
    return names;
}

}  // namespace builders
