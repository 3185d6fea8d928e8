#include "Downloads/DownloadFolder.h"

#include "Support/PercentEncoding.h"

#include <string>
#include <string_view>

namespace tarn {

namespace {

constexpr char const* key = "LastDownloadFolder";
constexpr std::string_view fileScheme = "file://";

// Byte for byte: a path need not be text.
std::string fileUrl(std::filesystem::path const& folder)
{
    static constexpr std::string_view plain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~/";
    static constexpr std::string_view digits = "0123456789ABCDEF";
    std::string url(fileScheme);
    for (auto const byte : (folder / "").string()) {
        auto const code = static_cast<unsigned char>(byte);
        if (plain.find(byte) != plain.npos)
            url += byte;
        else
            (url += '%').append({ digits[code >> 4], digits[code & 0xF] });
    }
    return url;
}

}

DownloadFolder::DownloadFolder(platform::UserDefaults& defaults, std::filesystem::path userFolder)
    : m_defaults(defaults)
    , m_userFolder(std::move(userFolder))
{
}

std::filesystem::path DownloadFolder::get() const
{
    auto const url = m_defaults.string(key).value_or("");
    if (!url.starts_with(fileScheme))
        return m_userFolder;
    std::filesystem::path const folder = percentDecodeLeniently(std::string_view(url).substr(fileScheme.size()));
    return folder.is_absolute() ? folder : m_userFolder;
}

void DownloadFolder::set(std::filesystem::path const& folder)
{
    m_defaults.setString(key, fileUrl(folder));
}

}
