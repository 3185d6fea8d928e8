#pragma once

#include "Support/Url.h"

#include <optional>
#include <string_view>
#include <variant>

namespace tarn {

// Decides where a URL that a page wants to open should go. Pure: no state, no effects.
//
// Only http and https have hosts here. Whatever stands in the place of a host in another URL, such as
// "javascript://mail.google.com/", names no server and never makes it a page of that server.
namespace LinkPolicy {

// The user says where to open a link to another Google app.
struct Ask {
    Url url;

    friend bool operator==(Ask const&, Ask const&) = default;
};

// Not for the web view: the system's browser, or the application registered for the scheme.
struct OpenExternally {
    Url url;

    friend bool operator==(OpenExternally const&, OpenExternally const&) = default;
};

// The web view goes on.
struct Allow {
    friend bool operator==(Allow const&, Allow const&) = default;
};

// The URLs in it are what a redirect link leads to, not the redirect link.
using Decision = std::variant<Ask, OpenExternally, Allow>;

enum class LinkActivated { no, yes };

// Where the user signs in.
inline constexpr std::string_view accountsHost { "accounts.google.com" };

// For a new window (window.open, a link with a target) that a page at `from` requests. `to` is absent when the request
// has no URL or an empty one.
Decision popup(std::optional<Url> const& to, std::optional<Url> const& from);

// For a navigation of a web view's main frame. Only links that the user activated are ever sent elsewhere.
Decision navigation(Url const& to, std::optional<Url> const& from, LinkActivated);

// What a Google redirect link leads to, one level deep; any other URL as it is.
Url resolvingGoogleRedirect(Url const&);

// A page of one of the apps, as opposed to a step of the sign-in. Redirect links are resolved first.
bool isGoogleApp(Url const&);

// Belongs to Google or to a sign-in provider and must stay inside the application. Redirect links are resolved first.
bool isInternal(Url const&);

// Of a scheme that a web view loads.
bool isWebScheme(Url const&);

}

}
