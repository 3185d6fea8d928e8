#pragma once

#include <span>
#include <string_view>

namespace tarn::stage {

// One folder of pages, served under one or more host names.
struct Service {
    enum class Access { open, signedIn };

    std::string_view host;
    std::string_view folder;
    Access access;
    // Paths that belong to the application itself: whatever lies below them is its start page.
    std::span<std::string_view const> applicationPaths;
};

inline constexpr std::string_view mailHost = "mail.google.com";
inline constexpr std::string_view accountsHost = "accounts.google.com";
inline constexpr std::string_view singleSignOnHost = "login.microsoftonline.com";

// Every host has one: what is not in the table is a foreign site.
Service const& serviceOf(std::string_view host);

}
