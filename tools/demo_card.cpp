// demo_card: writes a card with invented trainings, to try the program on.

#include <exception>
#include <iostream>
#include <span>

#include "tools/demo_files.h"

int main(int argumentCount, char** arguments) {
    const std::span<const char* const> all(arguments, static_cast<std::size_t>(argumentCount));
    try {
        const auto options = tools::parseDemoOptions(all.empty() ? all : all.subspan(1));
        if (!options) {
            std::cerr << "usage: demo_card DIRECTORY [--trainings N] [--seed S]\n"
                         "Writes DIRECTORY/data/result/ergo_bike with N (1 to "
                      << tools::mostDemoTrainings << ", default 300) invented trainings.\n";
            return 2;
        }
        const std::string problem = tools::writeDemoCard(*options);
        if (problem.empty()) return 0;
        std::cerr << "demo_card: " << problem << "\n";
    } catch (const std::exception& error) {
        std::cerr << "demo_card: " << error.what() << "\n";
    }
    return 1;
}
