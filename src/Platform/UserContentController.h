#pragma once

#include "Platform/ScriptMessage.h"

#include <memory>
#include <string>
#include <vector>

namespace tarn::platform {

enum class InjectionTime { documentStart, documentEnd };
enum class InjectedFrames { allFrames, mainFrameOnly };
enum class MessageReply { none, expected };

struct UserScript {
    std::string source;
    InjectionTime injectionTime { InjectionTime::documentStart };
    InjectedFrames frames { InjectedFrames::allFrames };
};

// What pages of all frames post to: window.webkit.messageHandlers.NAME.postMessage(value).
struct NamedMessageHandler {
    // A script identifier.
    std::string name;
    MessageReply reply { MessageReply::none };
    std::shared_ptr<ScriptMessageHandler> handler;
};

// What is installed into a view's pages. Read once, when the view is made.
struct UserContentController {
    std::vector<UserScript> userScripts {};
    std::vector<NamedMessageHandler> messageHandlers {};
};

}
