#include "App/Appcast.h"

#include <pugixml.hpp>

#include <algorithm>
#include <charconv>
#include <cstring>
#include <stdexcept>
#include <utility>

namespace tarn::Appcast {

namespace {

constexpr std::size_t longestNotes = 2'000;

// An attribute of the enclosure, or an element of the item: feeds have either.
std::string value(pugi::xml_node const& item, char const* name)
{
    auto const attribute = item.child("enclosure").attribute(name);
    return attribute ? attribute.value() : item.child(name).text().as_string();
}

std::optional<Release> release(pugi::xml_node const& item)
{
    auto const enclosure = item.child("enclosure");
    auto const platform = value(item, "sparkle:os");
    auto const text = value(item, "sparkle:version");
    auto const version = Version::parse(text);
    auto url = Url::parse(enclosure.attribute("url").value());
    std::string const length = enclosure.attribute("length").value();
    std::string signature = enclosure.attribute("sparkle:edSignature").value();
    std::uint64_t bytes = 0;
    auto const read = std::from_chars(length.data(), length.data() + length.size(), bytes);
    if ((!platform.empty() && platform != "linux") || !version || !url || url->scheme() != "https" || signature.empty()
        || read.ec != std::errc() || read.ptr != length.data() + length.size() || bytes == 0)
        return std::nullopt;
    return Release {
        .version = *version,
        .title = text,
        .notes = plainText(item.child("description").text().as_string()),
        .package = *std::move(url),
        .length = bytes,
        .signature = std::move(signature),
    };
}

// Resolves the reference at the start of the text, which begins with "&".
std::pair<std::string_view, std::size_t> resolved(std::string_view text)
{
    static constexpr std::pair<std::string_view, std::string_view> references[] { { "&amp;", "&" }, { "&lt;", "<" },
        { "&gt;", ">" }, { "&quot;", "\"" }, { "&#39;", "'" }, { "&apos;", "'" }, { "&nbsp;", " " } };
    for (auto const& [reference, character] : references) {
        if (text.starts_with(reference))
            return { character, reference.size() };
    }
    return { "&", 1 };
}

}

std::optional<Release> newest(std::string const& feed)
{
    pugi::xml_document document;
    // Without document types: no entities are declared, none expand.
    auto const parsed = document.load_buffer(feed.data(), feed.size(), pugi::parse_default & ~pugi::parse_doctype);
    auto const channel = document.child("rss").child("channel");
    if (!parsed || !channel)
        throw std::runtime_error("the list of releases cannot be read");
    std::optional<Release> best;
    for (auto const& item : channel.children("item")) {
        if (auto candidate = release(item); candidate && (!best || best->version < candidate->version))
            best = std::move(candidate);
    }
    return best;
}

std::string plainText(std::string_view markup)
{
    std::string text;
    auto const breakLine = [&] {
        while (text.ends_with(' '))
            text.pop_back();
        if (!text.empty() && !text.ends_with('\n'))
            text += '\n';
    };
    while (!markup.empty() && text.size() < longestNotes) {
        std::size_t used = 1;
        if (markup.front() == '<') {
            used = std::min(markup.find('>'), markup.size() - 1) + 1;
            auto tag = markup.substr(1, used - 1);
            tag = tag.substr(0, tag.find_first_of(" \t\n/>", 1));
            static constexpr std::string_view blocks[] { "p", "/p", "br", "div", "ul", "/ul", "ol", "h1", "/h1", "h2",
                "/h2", "h3", "/h3", "/li" };
            if (tag == "li") {
                breakLine();
                text += "• ";
            } else if (std::ranges::find(blocks, tag) != std::end(blocks)) {
                breakLine();
            }
        } else if (markup.front() == '&') {
            auto const [character, size] = resolved(markup);
            text += character;
            used = size;
        } else if (std::strchr(" \t\r\n", markup.front())) {
            if (!text.empty() && !text.ends_with(' ') && !text.ends_with('\n'))
                text += ' ';
        } else {
            text += markup.front();
        }
        markup.remove_prefix(used);
    }
    while (text.ends_with(' ') || text.ends_with('\n'))
        text.pop_back();
    if (!markup.empty() && text.size() >= longestNotes) {
        // Not in the middle of a character.
        while (!text.empty() && (static_cast<unsigned char>(text.back()) & 0xC0) == 0x80)
            text.pop_back();
        text.pop_back();
        text += "…";
    }
    return text;
}

}
