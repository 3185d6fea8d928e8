#pragma once

#include <string>
#include <utility>
#include <vector>

namespace tarn::stage {

struct Response {
    unsigned status { 200 };
    std::string contentType;
    std::string body;
    std::vector<std::pair<std::string, std::string>> headers;

    // A GET request to the location; the location must be a serialised URL or an absolute path.
    static Response redirect(std::string location) { return { 302, {}, {}, { { "Location", std::move(location) } } }; }
};

}
