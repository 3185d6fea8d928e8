#pragma once

#include <span>
#include <string_view>

namespace tarn::stage {

// An invented person who can sign in to the stand-in services.
struct Account {
    std::string_view id; // value of the sign-in cookie
    std::string_view name;
    std::string_view email;
    unsigned unread; // conversations at the start
};

// In the order in which an automatic sign-in hands them out.
std::span<Account const> accounts();
// Nothing for an id that is no account's.
Account const* accountWithId(std::string_view id);

}
