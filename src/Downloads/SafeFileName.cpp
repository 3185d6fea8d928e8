#include "Downloads/SafeFileName.h"

#include "Support/Unicode.h"

namespace tarn {

namespace {

// What Linux file systems allow, in bytes.
constexpr std::size_t longestName = 255;
// Of a longer one the end is no extension, only text behind a dot.
constexpr std::size_t longestExtension = 32;

std::string_view withoutFolders(std::string_view name)
{
    auto const separator = name.find_last_of("/\\");
    return separator == name.npos ? name : name.substr(separator + 1);
}

std::string visibleCharacters(std::string_view name)
{
    std::string visible;
    for (std::size_t position = 0; position < name.size();) {
        auto const start = position;
        auto const character = nextCharacter(name, position);
        if (isWhitespace(character))
            visible += ' ';
        else if (character != replacementCharacter && isVisible(character))
            visible += name.substr(start, position - start);
    }
    return visible;
}

std::string_view trimmed(std::string_view name)
{
    auto const start = name.find_first_not_of(" .");
    if (start == name.npos)
        return {};
    return name.substr(start, name.find_last_not_of(" .") + 1 - start);
}

std::string shortened(std::string_view name)
{
    if (name.size() <= longestName)
        return std::string(name);
    auto const dot = name.rfind('.');
    auto const hasExtension = dot != name.npos && name.size() - dot <= longestExtension;
    auto const extension = hasExtension ? name.substr(dot) : std::string_view();
    std::size_t end = longestName - extension.size();
    // Not within a character.
    while ((static_cast<unsigned char>(name[end]) & 0xC0) == 0x80)
        --end;
    return std::string(trimmed(name.substr(0, end))) + std::string(extension);
}

}

std::string safeFileName(std::string_view suggested)
{
    auto const visible = visibleCharacters(withoutFolders(suggested));
    auto const name = shortened(trimmed(visible));
    return name.empty() ? "download" : name;
}

}
