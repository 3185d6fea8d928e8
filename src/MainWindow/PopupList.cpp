#include "MainWindow/PopupList.h"

#include <algorithm>

namespace tarn {

PopupList::PopupList(platform::RunLoop& runLoop, Make make, Log log)
    : m_runLoop(runLoop)
    , m_make(std::move(make))
    , m_log(std::move(log))
{
}

PopupWindowController* PopupList::open(platform::WebViewConfiguration const& configuration, Uuid const& profile)
{
    if (m_entries.size() >= most) {
        m_log("[Popups] refused a window: too many are open");
        return nullptr;
    }
    m_entries.push_back({ profile, m_make(configuration) });
    auto& popup = *m_entries.back().controller;
    popup.onClose = [this, &popup] {
        onClose(popup.webView());
        remove(popup);
    };
    popup.onPopup = [this, profile](platform::WebViewConfiguration const& further) {
        auto* const next = open(further, profile);
        return next ? &next->webView() : nullptr;
    };
    popup.onAsk = [this](Url const& url) { onAsk(url); };
    return &popup;
}

void PopupList::remove(PopupWindowController const& popup)
{
    auto const entry = std::ranges::find(m_entries, &popup, [](Entry const& one) { return one.controller.get(); });
    if (entry == m_entries.end())
        return;
    m_closed.push_back(std::move(*entry));
    m_entries.erase(entry);
    m_runLoop.post(m_lifetime.guard([this] { m_closed.clear(); }));
}

void PopupList::closeAll(Uuid const& profile)
{
    std::erase_if(m_entries, [&](Entry const& entry) { return entry.profile == profile; });
    std::erase_if(m_closed, [&](Entry const& entry) { return entry.profile == profile; });
}

void PopupList::closeAll()
{
    m_entries.clear();
    m_closed.clear();
}

PopupList::Entries::const_iterator PopupList::entryOf(platform::WebView const& view) const
{
    return std::ranges::find(m_entries, &view, [](Entry const& entry) { return &entry.controller->webView(); });
}

PopupWindowController* PopupList::find(platform::WebView const& view) const
{
    auto const entry = entryOf(view);
    return entry == m_entries.end() ? nullptr : entry->controller.get();
}

std::optional<Uuid> PopupList::profileOf(platform::WebView const& view) const
{
    auto const entry = entryOf(view);
    return entry == m_entries.end() ? std::nullopt : std::optional(entry->profile);
}

}
