#include "Platform/Gtk/ClickWatch.h"

#include "scripts/clickWatchScript.h"

#include <nlohmann/json.hpp>

namespace tarn::gtk {

std::string_view ClickWatch::script()
{
    return clickWatchScript;
}

void ClickWatch::receive(MessageChannel::Message const& message)
{
    auto const body = nlohmann::json::parse(message.body, nullptr, false);
    if (!body.is_object() || !body.contains("sequence") || !body["sequence"].is_number_integer())
        return;
    auto const sequence = body["sequence"].get<std::int64_t>();
    if (message.name == "click-done") {
        if (m_last && m_last->sequence == sequence)
            m_last.reset();
        return;
    }
    if (message.name != "click")
        return;
    auto const isTrue = [&](char const* key) { return body.contains(key) && body[key] == true; };
    m_last = Click {
        .sequence = sequence,
        .inSubFrame = isTrue("sub"),
        .parentIsTop = isTrue("parentIsTop"),
        .download = isTrue("download"),
        .target = body.contains("target") && body["target"].is_string() ? body["target"].get<std::string>() : "",
    };
}

void ClickWatch::complete(platform::NavigationAction& action)
{
    using platform::TargetFrame;
    auto const click = std::exchange(m_last, std::nullopt);
    if (click) {
        bool const leavesFrame = click->target == "_top" || (click->target == "_parent" && click->parentIsTop);
        action.targetFrame = click->inSubFrame && !leavesFrame ? TargetFrame::sub : TargetFrame::main;
        action.shouldPerformDownload = click->download;
    } else if (action.button != platform::MouseButton::none) {
        // Clicked where no script may run: only in a sandboxed frame.
        action.targetFrame = TargetFrame::sub;
    } else {
        // A link that never was in the document: this is how a page saves what it has made.
        action.shouldPerformDownload = action.url.starts_with("blob:") || action.url.starts_with("data:");
    }
}

}
