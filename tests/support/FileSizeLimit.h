#pragma once

// A file size limit fails a write part-way, as a full disk or a quota does. Its signal is
// ignored, so the write returns an error instead of ending the process.

#include <csignal>
#include <sys/resource.h>

inline void limitFileSize(rlim_t bytes) {
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit limit{};
    getrlimit(RLIMIT_FSIZE, &limit);
    limit.rlim_cur = bytes; // the soft limit only, so it can go back
    setrlimit(RLIMIT_FSIZE, &limit);
}

// For the length of a scope in this process.
struct FileSizeLimit {
    rlimit saved{};
    explicit FileSizeLimit(rlim_t bytes) {
        getrlimit(RLIMIT_FSIZE, &saved);
        limitFileSize(bytes);
    }
    ~FileSizeLimit() {
        setrlimit(RLIMIT_FSIZE, &saved);
        std::signal(SIGXFSZ, SIG_DFL);
    }
};
