#include "MainWindow/PrintBridge.h"

#include "Bridge/ScriptMessageProxy.h"

namespace tarn {

std::string_view PrintBridge::script()
{
    static auto const source
        = "(function () {\n  window.print = function () {\n    try { window.webkit.messageHandlers."
        + std::string(handlerName) + ".postMessage({}); } catch (e) {}\n  };\n})();";
    return source;
}

void PrintBridge::install(platform::UserContentController& controller)
{
    controller.userScripts.push_back({
        .source = std::string(script()),
        .injectionTime = platform::InjectionTime::documentStart,
        .frames = platform::InjectedFrames::mainFrameOnly,
    });
    controller.messageHandlers.push_back({
        .name = handlerName,
        .reply = platform::MessageReply::none,
        .handler = std::make_shared<ScriptMessageProxy>(
            [](platform::ScriptMessage const& message) { print(message.webView); }, nullptr),
    });
}

}
