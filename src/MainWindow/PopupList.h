#pragma once

#include "MainWindow/PopupWindowController.h"
#include "Platform/RunLoop.h"
#include "Support/Lifetime.h"
#include "Support/Log.h"
#include "Support/Uuid.h"

#include <functional>
#include <memory>
#include <vector>

namespace tarn {

// The open popups, in the order they were opened, each with the profile that it belongs to, which stays its own when
// another one becomes active.
class PopupList {
public:
    // A page that opens more windows than this gets no further one.
    static constexpr std::size_t most = 50;

    using Make = std::function<std::unique_ptr<PopupWindowController>(platform::WebViewConfiguration const&)>;

    PopupList(platform::RunLoop&, Make, Log);

    // A popup asks where a link is to open.
    std::function<void(Url const&)> onAsk;
    // The user or the page closed it; its view is on its way out.
    std::function<void(platform::WebView const&)> onClose;

    // Popups that it opens belong to the same profile. None when there are too many already.
    PopupWindowController* open(platform::WebViewConfiguration const&, Uuid const& profile);
    std::size_t size() const { return m_entries.size(); }
    // The popups end in the call.
    void closeAll(Uuid const& profile);
    void closeAll();

    PopupWindowController* find(platform::WebView const&) const;
    std::optional<Uuid> profileOf(platform::WebView const&) const;

private:
    struct Entry {
        Uuid profile;
        std::unique_ptr<PopupWindowController> controller;
    };
    using Entries = std::vector<Entry>;
    Entries::const_iterator entryOf(platform::WebView const&) const;
    // Out of the list at once; the popup, which may be the one that asks, ends on a later turn of the run loop.
    void remove(PopupWindowController const&);

    platform::RunLoop& m_runLoop;
    Make m_make;
    Log m_log;
    Entries m_entries;
    Entries m_closed;
    Lifetime m_lifetime;
};

}
