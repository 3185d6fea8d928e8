#include "App/Version.h"

#include <algorithm>
#include <charconv>

namespace tarn {

std::optional<Version> Version::parse(std::string_view text)
{
    Version version;
    while (true) {
        auto const end = std::min(text.find('.'), text.size());
        std::uint32_t number = 0;
        auto const result = std::from_chars(text.data(), text.data() + end, number);
        if (end == 0 || end > 9 || result.ec != std::errc() || result.ptr != text.data() + end)
            return std::nullopt;
        version.m_numbers.push_back(number);
        if (end == text.size())
            break;
        text.remove_prefix(end + 1);
    }
    while (!version.m_numbers.empty() && version.m_numbers.back() == 0)
        version.m_numbers.pop_back();
    return version;
}

}
