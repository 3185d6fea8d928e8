#pragma once

#include "Request.h"

#include <chrono>
#include <filesystem>
#include <fstream>
#include <optional>
#include <vector>

namespace tarn::stage {

// What the services were asked, in order: in memory and, when a file is given, as one JSON object per line, appended
// and flushed, so that a test driver in another process can follow. "ms" counts from the log's making.
class RequestLog {
public:
    // Throws std::runtime_error when the file cannot be opened.
    explicit RequestLog(std::optional<std::filesystem::path> const& file);

    void add(Request);
    void clear() { m_requests.clear(); }
    std::vector<Request> const& requests() const { return m_requests; }

private:
    std::vector<Request> m_requests;
    std::ofstream m_file;
    std::chrono::steady_clock::time_point m_start { std::chrono::steady_clock::now() };
};

}
