#pragma once

#include "Platform/Gtk/Ref.h"
#include "Platform/WebViewConfiguration.h"

#include <webkit/webkit.h>

namespace tarn::gtk {

class MessageChannel;

// A view of the engine's: with the configuration's scripts, handlers and store, or, where it names an opener, with all
// that is the opener's, so that window.opener works.
Ref<WebKitWebView> makeEngineView(platform::WebViewConfiguration const&, WebKitWebContext*, MessageChannel const&);

}
