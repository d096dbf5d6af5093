#pragma once

// A file size limit fails a write part-way, as a full disk or a quota does. The signal the
// limit raises is ignored, so the write returns an error instead of ending the process.

#include <csignal>
#include <sys/resource.h>

inline void limitFileSize(rlim_t bytes) {
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit limit{};
    getrlimit(RLIMIT_FSIZE, &limit);
    limit.rlim_cur = bytes;
    setrlimit(RLIMIT_FSIZE, &limit);
}

// For the length of a scope in this process; only the soft limit moves, so it can go back.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes) {
        getrlimit(RLIMIT_FSIZE, &saved_);
        limitFileSize(bytes);
    }
    ~FileSizeLimit() {
        setrlimit(RLIMIT_FSIZE, &saved_);
        std::signal(SIGXFSZ, SIG_DFL);
    }
    FileSizeLimit(const FileSizeLimit &) = delete;
    FileSizeLimit &operator=(const FileSizeLimit &) = delete;

private:
    rlimit saved_{};
};
