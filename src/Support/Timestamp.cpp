#include "Support/Timestamp.h"

#include <glib.h>

#include <memory>

namespace tarn {

namespace {

struct Release {
    void operator()(GDateTime* date) const { g_date_time_unref(date); }
    void operator()(char* text) const { g_free(text); }
};

}

std::string toIso8601(Timestamp time)
{
    auto const seconds = std::chrono::floor<std::chrono::seconds>(time.time_since_epoch());
    std::unique_ptr<GDateTime, Release> const date(g_date_time_new_from_unix_utc(seconds.count()));
    return std::unique_ptr<char, Release>(g_date_time_format_iso8601(date.get())).get();
}

std::optional<Timestamp> fromIso8601(std::string_view text)
{
    std::string const terminated(text);
    if (terminated.find('\0') != std::string::npos)
        return std::nullopt;
    std::unique_ptr<GDateTime, Release> const date(g_date_time_new_from_iso8601(terminated.c_str(), nullptr));
    if (!date)
        return std::nullopt;

    std::chrono::seconds const seconds(g_date_time_to_unix(date.get()));
    auto const inSeconds
        = [](Timestamp time) { return std::chrono::floor<std::chrono::seconds>(time.time_since_epoch()); };
    if (seconds <= inSeconds(Timestamp::min()) || seconds >= inSeconds(Timestamp::max()))
        return std::nullopt;
    return Timestamp(seconds + std::chrono::microseconds(g_date_time_get_microsecond(date.get())));
}

}
