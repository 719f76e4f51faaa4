// A disk that is full: no file of this process can become longer than so many bytes.
#pragma once

#include <sys/resource.h>

#include <csignal>

namespace stand_ins {

// While it lives, writing beyond fails in the middle, as it does on a full disk.
class FileSizeLimit {
  public:
    explicit FileSizeLimit(rlim_t bytes) : previousHandler(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &previous);
        const rlimit limited = {.rlim_cur = bytes, .rlim_max = previous.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limited);
    }
    ~FileSizeLimit() {
        setrlimit(RLIMIT_FSIZE, &previous);
        std::signal(SIGXFSZ, previousHandler);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

  private:
    rlimit previous = {};
    void (*previousHandler)(int);
};

}  // namespace stand_ins
