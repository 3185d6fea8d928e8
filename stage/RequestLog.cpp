#include "RequestLog.h"

#include <nlohmann/json.hpp>

#include <stdexcept>

namespace tarn::stage {

RequestLog::RequestLog(std::optional<std::filesystem::path> const& file)
{
    if (!file)
        return;
    m_file.open(*file, std::ios::app);
    if (!m_file)
        throw std::runtime_error("cannot write " + file->string());
}

void RequestLog::add(Request request)
{
    if (m_file.is_open()) {
        using std::chrono::milliseconds;
        auto const time = std::chrono::duration_cast<milliseconds>(std::chrono::steady_clock::now() - m_start).count();
        nlohmann::ordered_json const line { { "ms", time }, { "method", request.method }, { "host", request.host },
            { "path", request.path }, { "query", request.query }, { "account", request.account },
            { "cookies", request.cookies }, { "userAgent", request.userAgent }, { "body", request.body } };
        m_file << line.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace) << std::endl;
    }
    m_requests.push_back(std::move(request));
}

}
