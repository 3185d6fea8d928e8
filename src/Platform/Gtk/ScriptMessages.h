#pragma once

#include "Platform/Gtk/MessageChannel.h"
#include "Platform/UserContentController.h"

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace tarn::gtk {

// Gives the pages of one view window.webkit.messageHandlers, and brings what they post to the handlers, over the
// message channel.
class ScriptMessages {
public:
    // For the channel's script world.
    static std::string_view relayScript();
    // For the pages themselves, before all other scripts; empty when there is nothing to post to.
    static std::string handlersScript(std::vector<platform::NamedMessageHandler> const&);

    ScriptMessages(platform::WebView&, WebKitWebView*, std::vector<platform::NamedMessageHandler>);
    ~ScriptMessages();

    void receive(MessageChannel::Message const&, MessageChannel::Answer);

private:
    class Document;

    void receivePost(MessageChannel::Message const&, MessageChannel::Answer);
    std::shared_ptr<Document> document(std::string const& id, platform::FrameKind);

    platform::WebView& m_view;
    WebKitWebView* m_engineView;
    std::vector<platform::NamedMessageHandler> m_handlers;
    // By the names that the scripts gave them; only those that somebody keeps.
    std::map<std::string, std::weak_ptr<Document>> m_documents;
};

}
