#include "Account.h"

#include <algorithm>
#include <array>

namespace tarn::stage {

std::span<Account const> accounts()
{
    static constexpr std::array all {
        Account { "ada", "Ada Winter", "ada.winter@example.com", 3 },
        Account { "bo", "Bo Larsen", "bo.larsen@example.org", 12 },
        Account { "chen", "Chen Okafor", "chen.okafor@example.net", 0 },
    };
    return all;
}

Account const* accountWithId(std::string_view id)
{
    auto const found = std::ranges::find(accounts(), id, &Account::id);
    return found == accounts().end() ? nullptr : &*found;
}

}
