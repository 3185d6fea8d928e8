#include "Bridge/ScriptMessageProxy.h"

namespace tarn {

ScriptMessageProxy::ScriptMessageProxy(Handler handler, ReplyHandler replyHandler)
    : m_handler(std::move(handler))
    , m_replyHandler(std::move(replyHandler))
{
}

void ScriptMessageProxy::didReceive(platform::ScriptMessage const& message)
{
    if (m_handler)
        m_handler(message);
}

void ScriptMessageProxy::didReceive(platform::ScriptMessage const& message, platform::ScriptReply reply)
{
    if (m_replyHandler)
        m_replyHandler(message, std::move(reply));
    else
        std::move(reply)({ .error = "no handler" });
}

}
