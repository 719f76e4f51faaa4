// Feeds a fuzzer the files of a directory: replay DIRECTORY

#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "tests/fuzzing/fuzzing.h"

int main(int count, char** arguments) {
    std::vector<std::string> inputs = {std::string()};  // no byte at all is an input, too
    for (int i = 1; i < count; ++i) {
        for (const auto& entry : std::filesystem::directory_iterator(arguments[i])) {
            std::ifstream file(entry.path(), std::ios::binary);
            inputs.emplace_back(std::istreambuf_iterator<char>(file),
                                std::istreambuf_iterator<char>());
        }
    }
    for (const std::string& input : inputs)
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(input.data()), input.size());
    std::printf("%zu inputs\n", inputs.size());
    return inputs.size() > 1 ? 0 : 1;
}
