#pragma once

#include "Platform/Gtk/Signal.h"
#include "Platform/UIDelegate.h"
#include "Support/Lifetime.h"

#include <webkit/webkit.h>

#include <functional>

namespace tarn::gtk {

// Brings the dialogs that the pages of one view ask for to the view's delegate, and the answers back. The engine lets
// them wait: nothing here blocks.
class PageDialogs {
public:
    PageDialogs(platform::WebView&, WebKitWebView*);

    void setDelegate(platform::UIDelegate* delegate) { m_delegate = delegate; }

    // The page has been asked to go and the user is asked about it; then how that ended.
    std::function<void()> onAskToLeave;
    std::function<void(bool leaves)> onLeaveDecided;

private:
    gboolean runScriptDialog(WebKitScriptDialog*);
    gboolean runFileChooser(WebKitFileChooserRequest*);

    platform::WebView& m_view;
    platform::UIDelegate* m_delegate { nullptr };
    Signal<gboolean(WebKitScriptDialog*)> m_onScriptDialog;
    Signal<gboolean(WebKitFileChooserRequest*)> m_onFileChooser;
    Lifetime m_lifetime;
};

}
