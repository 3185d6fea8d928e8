#include "Support/Signature.h"

#include <sodium.h>

#include <array>
#include <optional>

namespace tarn {

namespace {

template <std::size_t Size> std::optional<std::array<unsigned char, Size>> decoded(std::string_view text)
{
    std::array<unsigned char, Size> bytes {};
    std::size_t size = 0;
    char const* end = nullptr;
    if (sodium_base642bin(
            bytes.data(), Size, text.data(), text.size(), nullptr, &size, &end, sodium_base64_VARIANT_ORIGINAL)
            != 0
        || size != Size || end != text.data() + text.size())
        return std::nullopt;
    return bytes;
}

}

bool isSigned(std::string_view content, std::string_view signature, std::string_view publicKey)
{
    auto const bytes = decoded<crypto_sign_BYTES>(signature);
    auto const key = decoded<crypto_sign_PUBLICKEYBYTES>(publicKey);
    return sodium_init() >= 0 && bytes && key
        && crypto_sign_verify_detached(
               bytes->data(), reinterpret_cast<unsigned char const*>(content.data()), content.size(), key->data())
        == 0;
}

}
