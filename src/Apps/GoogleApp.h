#pragma once

#include "Support/Url.h"

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>

namespace tarn {

// One of the web apps that Tarn hosts. Behaves like its enumeration: compares, orders, switches.
class GoogleApp {
public:
    enum class Case : std::uint8_t { mail, calendar, drive, gemini, keep, tasks, contacts };
    using enum Case;

    // In the order in which they are always presented.
    static std::array<GoogleApp, 7> const allCases;

    constexpr GoogleApp(Case value)
        : m_case(value)
    {
    }
    constexpr operator Case() const { return m_case; }

    // The whole string, case-sensitive.
    static std::optional<GoogleApp> fromRawValue(std::string_view);

    // What files and identifiers hold.
    std::string_view rawValue() const;
    std::string_view title() const;
    // The home page.
    Url const& url() const;
    // Of a symbolic icon, drawn in the colour of the text beside it.
    std::string_view iconName() const;

    // In allCases: 0 to 6.
    constexpr int position() const { return static_cast<int>(m_case); }
    // The digit of the keyboard shortcut: 1 to 7.
    constexpr int shortcutNumber() const { return position() + 1; }

private:
    Case m_case;
};

inline constexpr std::array<GoogleApp, 7> GoogleApp::allCases { mail, calendar, drive, gemini, keep, tasks, contacts };

}

template <> struct std::hash<tarn::GoogleApp> {
    std::size_t operator()(tarn::GoogleApp app) const { return std::hash<std::string_view> {}(app.rawValue()); }
};
