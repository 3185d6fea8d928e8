#pragma once

#include "Support/Reply.h"

#include <memory>
#include <optional>
#include <string>

namespace tarn::platform {

class WebView;

enum class FrameKind { main, sub };

// One document of a view, in its main frame or in a sub-frame, as somebody who can be called back. Keeping it does not
// keep the document: what is sent to one that has gone is lost.
class ScriptDocument {
public:
    virtual ~ScriptDocument() = default;

    // Calls the page's global function of that name with the text, where the page has such a function.
    virtual void call(std::string const& function, std::string const& argument) = 0;
};

// What a page's script posted to a named handler.
struct ScriptMessage {
    WebView& webView;
    std::shared_ptr<ScriptDocument> document;
    FrameKind frame { FrameKind::main };
    // The engine's word: "https://host" with a port if it is not the usual one, or "null" for an opaque origin.
    std::string origin;
    // What the page chose: JSON text of any value, nested as deep and as long as it likes, up to a few megabytes.
    std::string body;
};

// The result resolves the page's promise, the error rejects it; neither resolves it with null.
struct ScriptAnswer {
    std::optional<std::string> result {};
    std::optional<std::string> error {};

    friend bool operator==(ScriptAnswer const&, ScriptAnswer const&) = default;
};

using ScriptReply = Reply<ScriptAnswer>;

// Receives the messages of one name.
class ScriptMessageHandler {
public:
    virtual ~ScriptMessageHandler() = default;

    virtual void didReceive(ScriptMessage const&) = 0;
    // The page waits for the answer, which may come later.
    virtual void didReceive(ScriptMessage const&, ScriptReply) = 0;
};

}
