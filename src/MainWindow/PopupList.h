#pragma once

#include "MainWindow/PopupWindowController.h"
#include "Platform/RunLoop.h"
#include "Support/Lifetime.h"
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

    explicit PopupList(platform::RunLoop&);

    bool isFull() const { return m_entries.size() >= most; }
    std::size_t size() const { return m_entries.size(); }
    PopupWindowController& add(Uuid const& profile, std::unique_ptr<PopupWindowController>);
    // Out of the list at once; the popup, which may be the one that asks, ends on a later turn of the run loop.
    void remove(PopupWindowController const&);
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

    platform::RunLoop& m_runLoop;
    Entries m_entries;
    Entries m_closed;
    Lifetime m_lifetime;
};

}
