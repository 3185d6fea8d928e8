#pragma once

#include <string>

namespace tarn::stage {

// What a stand-in service was asked. Everything is as it came over the wire, still percent-encoded.
struct Request {
    std::string method;
    std::string host; // lower-case, without port
    std::string path;
    std::string query; // without the question mark
    std::string cookies; // the Cookie header
    std::string userAgent;
    std::string account; // id of the signed-in account, empty without a valid sign-in
    std::string body; // of POST requests
};

}
