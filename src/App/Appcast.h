#pragma once

#include "App/Version.h"
#include "Support/Url.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// The feed in which a publisher announces releases: RSS with the "sparkle" names of appcasts.
namespace tarn::Appcast {

struct Release {
    Version version;
    // As the user reads it.
    std::string title;
    // Plain text, shortened; empty when the feed says nothing.
    std::string notes;
    Url package;
    // Bytes.
    std::uint64_t length { 0 };
    // Base64.
    std::string signature;
};

// The newest release of the feed for this platform whose package has an https address, a length and a signature.
// Throws std::runtime_error when it is no feed. Nothing when no such release is in it.
std::optional<Release> newest(std::string const& feed);

// Markup to text: tags fall away, blocks and list items begin a line, character references are resolved.
std::string plainText(std::string_view markup);

}
