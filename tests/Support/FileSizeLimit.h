#pragma once

#include <sys/resource.h>

#include <csignal>

namespace tarn {

// While it lives, this process cannot write a file beyond the given size: the write that crosses it is cut short, the
// next one fails.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes)
    {
        std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &m_old);
        rlimit const limit { bytes, m_old.rlim_max };
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit() { setrlimit(RLIMIT_FSIZE, &m_old); }
    FileSizeLimit(FileSizeLimit const&) = delete;
    FileSizeLimit& operator=(FileSizeLimit const&) = delete;

private:
    rlimit m_old {};
};

}
