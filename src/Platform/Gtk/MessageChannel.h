#pragma once

#include "Platform/Gtk/Ref.h"
#include "Support/Log.h"
#include "Support/Reply.h"

#include <webkit/webkit.h>

#include <functional>
#include <initializer_list>
#include <map>
#include <string>
#include <string_view>

namespace tarn::gtk {

// The road from scripts in Tarn's own script world to the application: a URI scheme that only this world can use. The
// engine's script messages cannot tell which view posted (windows that a page opens share their opener's handlers);
// here the engine itself names the view and the origin. A page can neither see the road nor forge a message on it.
class MessageChannel {
public:
    static constexpr char const* scheme = "tarn-channel";
    static constexpr char const* scriptWorld = "tarn";

    struct Message {
        std::string_view name;
        // The engine's own word on the sender: "https://host", or "null" for an opaque origin.
        std::string_view origin;
        // Chosen by our script in the page's process: any text, at most maximumBody bytes.
        std::string_view body;
    };
    // Text for the script that sent; a dropped answer is an empty one. It may come later, also after the sender has
    // gone.
    using Answer = Reply<std::string>;
    using Receiver = std::function<void(Message const&, Answer)>;

    static constexpr std::size_t maximumBody { 8'388'608 };

    // Once per process, before the first view.
    MessageChannel(WebKitWebContext*, Log);
    MessageChannel(MessageChannel const&) = delete;
    MessageChannel& operator=(MessageChannel const&) = delete;

    // Nothing receives for the view after removeReceiver().
    void setReceiver(WebKitWebView*, Receiver);
    void removeReceiver(WebKitWebView*);

    // Scripts for scriptWorld, run in all frames before the page's own. Each source is a function that is called with
    // send(name, text), which promises the answer, or undefined where there is none.
    Ref<WebKitUserContentManager> contentManagerWithScripts(std::initializer_list<std::string_view> sources) const;

private:
    void handle(WebKitURISchemeRequest*);

    Log m_log;
    bool m_saidTooLong { false };
    // Known to this run's scripts only: a page that fetches the scheme by itself is refused.
    std::string m_nonce;
    std::map<WebKitWebView*, Receiver> m_receivers;
};

}
