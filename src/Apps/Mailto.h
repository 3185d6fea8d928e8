#pragma once

#include "Support/Url.h"

#include <optional>

// Translates e-mail addresses of the mailto scheme (RFC 6068) into Gmail's full-screen compose page.
namespace tarn::Mailto {

// The compose page with nothing filled in.
Url const& newEmail();

// Recipients, subject, body, cc and bcc are carried over; any other header is not. Nothing when it is no mailto URL.
std::optional<Url> composeURL(Url const&);

}
