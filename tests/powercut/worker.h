// A process of the rider's that answers one question after the other. Each state in a process of
// its own would take longer to make that process than to do the work.
#pragma once

#include <cstdio>
#include <functional>
#include <string>
#include <utility>

namespace powercut {

class Worker {
  public:
    // Prints its answer, in lines; the question is a line as well.
    using Answer = std::function<void(const std::string& question, std::FILE* out)>;

    explicit Worker(Answer answerOfQuestion) : answer(std::move(answerOfQuestion)) {}
    Worker(const Worker&) = delete;
    Worker& operator=(const Worker&) = delete;
    ~Worker() { end(); }

    // Starts the process when there is none. A process that comes to a bad end adds a line "L …".
    std::string ask(const std::string& question);

    // The process's status, 0 when there was none.
    int end();

  private:
    void begin();
    [[noreturn]] void answerAll();

    Answer answer;
    int process = -1;
    std::FILE* questions = nullptr;
    std::FILE* answers = nullptr;
};

}  // namespace powercut
