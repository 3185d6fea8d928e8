#pragma once

#include "Platform/ScriptMessage.h"

#include <functional>

namespace tarn {

// The one kind of object that is registered for messages. It lives as long as the views it is installed in, longer than
// what answers them: its closures refer to that weakly, and say what holds when it is gone.
class ScriptMessageProxy final : public platform::ScriptMessageHandler {
public:
    using Handler = std::function<void(platform::ScriptMessage const&)>;
    // May answer later.
    using ReplyHandler = std::function<void(platform::ScriptMessage const&, platform::ScriptReply)>;

    // Either may be absent.
    ScriptMessageProxy(Handler, ReplyHandler);

    void didReceive(platform::ScriptMessage const&) override;
    void didReceive(platform::ScriptMessage const&, platform::ScriptReply) override;

private:
    Handler m_handler;
    ReplyHandler m_replyHandler;
};

}
