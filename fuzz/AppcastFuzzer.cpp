#include "App/Appcast.h"
#include "Fuzz.h"
#include "Support/Signature.h"
#include "Support/Unicode.h"

#include <stdexcept>

namespace tarn::fuzz {
namespace {

void checkNotes(std::string_view notes, bool wasUtf8)
{
    // The last entry can be a list item's mark or a resolved reference.
    require(notes.size() <= 2'000 + 8, "notes are bounded");
    require(!notes.starts_with('\n') && !notes.ends_with('\n') && !notes.ends_with(' '), "notes have no empty ends");
    require(notes.find("\n\n") == notes.npos && notes.find('\t') == notes.npos, "and no gaps");
    require(!wasUtf8 || isUtf8(notes), "no character is cut");
}

}
}

int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    using namespace tarn;
    auto const feed = std::string(fuzz::text(data, size));
    fuzz::checkNotes(Appcast::plainText(feed), isUtf8(feed));
    try {
        auto const release = Appcast::newest(feed);
        if (!release)
            return 0;
        fuzz::require(release->package.scheme() == "https" && release->package.hasHost(), "packages come by https");
        fuzz::require(release->length > 0 && !release->signature.empty(), "what is offered can be checked");
        fuzz::require(Version::parse(release->title) == release->version, "the user reads the version that is meant");
        fuzz::checkNotes(release->notes, isUtf8(feed));
        fuzz::require(!isSigned(feed, release->signature, "AAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAA="),
            "nobody guesses a signature");
    } catch (std::runtime_error const&) {
        // No feed.
    }
    return 0;
}
