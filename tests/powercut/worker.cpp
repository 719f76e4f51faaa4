#include "tests/powercut/worker.h"

#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <exception>
#include <string_view>

#include "tests/powercut/disk.h"

namespace powercut {

namespace {

constexpr unsigned secondsForOneAnswer = 120;
constexpr uid_t rider = 1000;
constexpr std::string_view endOfAnswer = ".\n";

}  // namespace

std::string Worker::ask(const std::string& question) {
    if (process < 0) begin();
    std::fprintf(questions, "%s\n", question.c_str());
    std::fflush(questions);
    std::string text;
    std::array<char, 4096> line = {};
    while (std::fgets(line.data(), line.size(), answers) != nullptr) {
        if (std::string_view(line.data()) == endOfAnswer) return text;
        text += line.data();
    }
    return text + "L the program came to a bad end (" + std::to_string(end()) + ")\n";
}

int Worker::end() {
    if (process < 0) return 0;
    std::fclose(questions);
    std::fclose(answers);
    int status = 0;
    waitpid(process, &status, 0);
    process = -1;
    return status;
}

void Worker::begin() {
    std::array<int, 2> asked = {};
    std::array<int, 2> answered = {};
    require(pipe(asked.data()) == 0 && pipe(answered.data()) == 0, "pipes");
    std::fflush(stdout);
    process = fork();
    require(process >= 0, "a process");
    const bool isWorker = process == 0;
    close(isWorker ? asked[1] : asked[0]);
    close(isWorker ? answered[0] : answered[1]);
    questions = isWorker ? fdopen(asked[0], "r") : fdopen(asked[1], "w");
    answers = isWorker ? fdopen(answered[1], "w") : fdopen(answered[0], "r");
    if (isWorker) answerAll();
}

void Worker::answerAll() {
    require(setgid(rider) == 0 && setuid(rider) == 0, "a rider");
    std::array<char, 4096> line = {};
    while (std::fgets(line.data(), line.size(), questions) != nullptr) {
        alarm(secondsForOneAnswer);
        try {
            answer(line.data(), answers);
        } catch (const std::exception& error) {
            std::fprintf(answers, "L %s\n", error.what());
        }
        alarm(0);
        // Not in the way of unmounting.
        require(chdir("/") == 0, "leaving the card");
        std::fputs(endOfAnswer.data(), answers);
        std::fflush(answers);
    }
    _exit(0);
}

}  // namespace powercut
