#include "Platform/Gtk/ScriptMessages.h"

#include "scripts/messageHandlersScript.h"
#include "scripts/messageRelayScript.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <deque>
#include <optional>

namespace tarn::gtk {

namespace {

// Calls that a frame has not come for yet; the oldest go first.
constexpr std::size_t mostWaiting = 64;

std::string answerText(platform::ScriptAnswer const& answer)
{
    auto text = nlohmann::json::object();
    if (answer.result)
        text["result"] = *answer.result;
    if (answer.error)
        text["error"] = *answer.error;
    return text.dump(-1, ' ', true, nlohmann::json::error_handler_t::replace);
}

}

// Main frames are called directly, which counts as something that the user did. The engine reaches no other frames by
// itself: those keep a question open, and the calls are its answer.
class ScriptMessages::Document final : public platform::ScriptDocument {
public:
    Document(std::string id, platform::FrameKind frame, WebKitWebView* view)
        : m_id(std::move(id))
        , m_frame(frame)
    {
        g_weak_ref_init(&m_view, view);
    }
    ~Document() override { g_weak_ref_clear(&m_view); }

    void call(std::string const& function, std::string const& argument) override
    {
        m_waiting.push_back(nlohmann::json::array({ function, argument }));
        if (m_waiting.size() > mostWaiting)
            m_waiting.pop_front();
        deliver();
    }

    void listen(MessageChannel::Answer answer)
    {
        m_listener = std::move(answer);
        deliver();
    }

private:
    void deliver()
    {
        auto const view = Ref<WebKitWebView>::adopt(static_cast<WebKitWebView*>(g_weak_ref_get(&m_view)));
        bool const isMain = m_frame == platform::FrameKind::main;
        if (m_waiting.empty() || !view || (!isMain && !m_listener))
            return;
        auto const calls = nlohmann::json(std::exchange(m_waiting, {}))
                               .dump(-1, ' ', true, nlohmann::json::error_handler_t::replace);
        if (!isMain) {
            std::move (*std::exchange(m_listener, std::nullopt))(calls);
            return;
        }
        auto const source
            = "globalThis.tarnRelay?.deliver(" + nlohmann::json(m_id).dump(-1, ' ', true) + "," + calls + ")";
        webkit_web_view_evaluate_javascript(view.get(), source.data(), static_cast<gssize>(source.size()),
            MessageChannel::scriptWorld, nullptr, nullptr, nullptr, nullptr);
    }

    std::string m_id;
    platform::FrameKind m_frame;
    GWeakRef m_view {};
    std::deque<nlohmann::json> m_waiting;
    std::optional<MessageChannel::Answer> m_listener;
};

std::string_view ScriptMessages::relayScript()
{
    return messageRelayScript;
}

std::string ScriptMessages::handlersScript(std::vector<platform::NamedMessageHandler> const& handlers)
{
    if (handlers.empty())
        return {};
    auto names = nlohmann::json::object();
    for (auto const& handler : handlers)
        names[handler.name] = handler.reply == platform::MessageReply::expected;
    return "(" + std::string(messageHandlersScript) + ")(" + names.dump() + ");";
}

ScriptMessages::ScriptMessages(
    platform::WebView& view, WebKitWebView* engineView, std::vector<platform::NamedMessageHandler> handlers)
    : m_view(view)
    , m_engineView(engineView)
    , m_handlers(std::move(handlers))
{
}

ScriptMessages::~ScriptMessages() = default;

void ScriptMessages::receive(MessageChannel::Message const& message, MessageChannel::Answer answer)
{
    if (message.name == "post") {
        receivePost(message, std::move(answer));
    } else if (message.name == "listen") {
        auto const known = m_documents.find(std::string(message.body));
        if (auto const document = known == m_documents.end() ? nullptr : known->second.lock())
            document->listen(std::move(answer));
    }
}

void ScriptMessages::receivePost(MessageChannel::Message const& message, MessageChannel::Answer answer)
{
    auto rest = message.body;
    auto const takeLine = [&rest] {
        auto const line = rest.substr(0, rest.find('\n'));
        rest.remove_prefix(std::min(rest.size(), line.size() + 1));
        return std::string(line);
    };
    auto const documentId = takeLine();
    auto const frame = takeLine() == "main" ? platform::FrameKind::main : platform::FrameKind::sub;
    auto const handler = std::ranges::find(m_handlers, takeLine(), &platform::NamedMessageHandler::name);
    if (handler == m_handlers.end()) {
        std::move(answer)(answerText({ .error = "no handler" }));
        return;
    }

    platform::ScriptMessage const received {
        .webView = m_view,
        .document = document(documentId, frame),
        .frame = frame,
        .origin = std::string(message.origin),
        .body = std::string(rest),
    };
    // The handler may end the view.
    auto const receiver = handler->handler;
    if (handler->reply == platform::MessageReply::none) {
        std::move(answer)({});
        receiver->didReceive(received);
        return;
    }
    auto const shared = std::make_shared<MessageChannel::Answer>(std::move(answer));
    receiver->didReceive(received,
        platform::ScriptReply([shared](platform::ScriptAnswer const& given) { std::move (*shared)(answerText(given)); },
            { .error = "no answer" }));
}

std::shared_ptr<ScriptMessages::Document> ScriptMessages::document(std::string const& id, platform::FrameKind frame)
{
    if (auto const known = m_documents.find(id); known != m_documents.end()) {
        if (auto document = known->second.lock())
            return document;
    }
    std::erase_if(m_documents, [](auto const& entry) { return entry.second.expired(); });
    auto document = std::make_shared<Document>(id, frame, m_engineView);
    m_documents.emplace(id, document);
    return document;
}

}
