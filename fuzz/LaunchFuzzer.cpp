// The input: a command line, its arguments ended by zeros; and the bytes of a message that any program of the user can
// send to the running instance.

#include "App/CommandLine.h"
#include "App/NewItem.h"
#include "Fuzz.h"
#include "Platform/Gtk/LaunchMessage.h"

#include <algorithm>

namespace {

std::vector<std::string> arguments(std::string_view text)
{
    std::vector<std::string> all;
    while (!text.empty()) {
        auto const end = std::min(text.find('\0'), text.size());
        all.emplace_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return all;
}

}

int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    using namespace tarn;
    auto const given = arguments(fuzz::text(data, size));
    auto const meaning = CommandLine::parse(given);
    if (auto const* const request = std::get_if<LaunchRequest>(&meaning)) {
        for (auto const& url : request->urls)
            fuzz::require(std::ranges::find(given, url) != given.end(), "links are taken as they were given");
        fuzz::require(request->newItem.empty() || NewItem::address(request->newItem), "nothing unknown is begun");
        fuzz::require(gtk::LaunchMessage::unpack(gtk::LaunchMessage::pack(*request)) == *request,
            "the running instance is asked for the same");
    }

    auto* const bytes = g_bytes_new(data, size);
    auto* const message = g_variant_ref_sink(g_variant_new_from_bytes(gtk::LaunchMessage::type().gobj(), bytes, FALSE));
    auto const received = gtk::LaunchMessage::unpack(Glib::wrap(message));
    fuzz::require(gtk::LaunchMessage::unpack(gtk::LaunchMessage::pack(received)) == received, "it can be sent on");
    g_bytes_unref(bytes);
    return 0;
}
