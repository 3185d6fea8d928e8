#include "Bridge/UnreadCount.h"
#include "Fuzz.h"

#include <string>

int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    using namespace tarn;
    auto const title = fuzz::text(data, size);
    auto const count = UnreadCount::parse(title);
    fuzz::require(count >= 0, "nobody has fewer than none");
    fuzz::require(UnreadCount::parse("Inbox (1,234) " + std::string(title)) == 1234, "the first number counts");
    fuzz::require(count == 0 || UnreadCount::parse(std::string(title) + " (7)") == count, "and no other one");
    return 0;
}
