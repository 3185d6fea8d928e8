#pragma once

#include <string_view>

namespace tarn {

// Whether the Ed25519 signature (RFC 8032) of the content was made with the key. Signature and key are in base64; of
// any other length or form they verify nothing.
bool isSigned(std::string_view content, std::string_view signature, std::string_view publicKey);

}
