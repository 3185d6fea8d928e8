#pragma once

#include "Platform/Gtk/Signal.h"
#include "Platform/UIDelegate.h"

#include <webkit/webkit.h>

#include <functional>

namespace tarn::gtk {

// Brings what the pages of one view ask to be allowed to the view's delegate. What is not asked for here is denied:
// notifications above all, which would go to the desktop past the application.
class PagePermissions {
public:
    using Delegate = std::function<platform::UIDelegate*()>;

    PagePermissions(platform::WebView&, WebKitWebView*, Delegate);

private:
    bool request(WebKitPermissionRequest*);
    bool query(WebKitPermissionStateQuery*);

    platform::WebView& m_view;
    Delegate m_delegate;
    Signal<gboolean(WebKitPermissionRequest*)> m_onRequest;
    Signal<gboolean(WebKitPermissionStateQuery*)> m_onQuery;
};

}
