#pragma once

#include <string>
#include <string_view>

// The scripts that are put into the pages, and the names by which pages and application call each other.
namespace tarn::BridgeScripts {

// What pages post to.
inline constexpr char const* notifyHandler { "tarnNotify" };
inline constexpr char const* notifyPermissionHandler { "tarnNotifyPermission" };
// Answers with the permission, and never asks the user.
inline constexpr char const* notifyStateHandler { "tarnNotifyState" };
// Global functions of the page, each with one string argument.
inline constexpr char const* notificationClicked { "__tarnNotificationClicked" };
inline constexpr char const* setNotificationPermission { "__tarnSetNotificationPermission" };

// The text as a script's string literal, quotes included: ASCII only, and safe inside HTML. UTF-8; what is ill-formed
// becomes U+FFFD. Whatever the application splices into a script goes through here.
std::string jsString(std::string_view);

// A call of a page's global function that does nothing in a page without it.
std::string guardedCall(std::string_view function, std::string_view argument);

// Replaces the page's Notification. For document start, in all frames. The permission is "default", "granted" or
// "denied".
std::string notifications(std::string_view initialPermission);

// Leads a page's service worker notifications and permission queries to the page's Notification. To be injected before
// notifications(), in the same way.
std::string notificationRoads();

// Declines a browser-promotion card. For document end, in all frames.
std::string_view promoDismissal();

}
