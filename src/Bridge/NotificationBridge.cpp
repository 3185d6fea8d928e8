#include "Bridge/NotificationBridge.h"

#include "Bridge/BridgeScripts.h"
#include "Bridge/NotificationText.h"
#include "Bridge/ScriptMessageProxy.h"

#include <nlohmann/json.hpp>

#include <utility>

namespace tarn {

using platform::Authorization;
using platform::AuthorizationStatus;

namespace {

constexpr char const* revealKey = "reveal";
constexpr std::size_t longestPageID = 64;

// A message is a flat dictionary; whoever nests deeper gets no memory for it.
nlohmann::json parseFlat(std::string const& text)
{
    return nlohmann::json::parse(
        text, [](int depth, nlohmann::json::parse_event_t, nlohmann::json const&) { return depth < 3; }, false);
}

std::string stringField(nlohmann::json const& message, char const* name)
{
    auto const field = message.find(name);
    return field != message.end() && field->is_string() ? field->get<std::string>() : std::string();
}

std::string permissionFor(AuthorizationStatus status)
{
    switch (status) {
    case AuthorizationStatus::authorized:
    case AuthorizationStatus::provisional:
        return "granted";
    case AuthorizationStatus::denied:
        return "denied";
    case AuthorizationStatus::notDetermined:
        break;
    }
    return "default";
}

}

NotificationBridge::NotificationBridge(Environment environment)
    : m_environment(std::move(environment))
    , m_queue(m_environment.center, m_environment.log)
{
    m_environment.center.setDelegate(this);
}

NotificationBridge::~NotificationBridge()
{
    m_environment.center.setDelegate(nullptr);
}

void NotificationBridge::askOnFirstLaunch()
{
    m_environment.center.authorization([weak = std::weak_ptr(m_self)](Authorization const& authorization) {
        auto const bridge = weak.lock();
        if (bridge && authorization.status == AuthorizationStatus::notDetermined)
            bridge->m_environment.center.requestAuthorization([](Authorization const&) {});
    });
}

void NotificationBridge::install(platform::UserContentController& content)
{
    std::weak_ptr const weak = m_self;
    content.userScripts.push_back({ .source = BridgeScripts::notificationRoads() });
    content.userScripts.push_back({ .source = BridgeScripts::notifications("default") });
    content.messageHandlers.push_back({ .name = BridgeScripts::notifyHandler,
        .reply = platform::MessageReply::none,
        .handler = std::make_shared<ScriptMessageProxy>(
            [weak](platform::ScriptMessage const& message) {
                if (auto const bridge = weak.lock())
                    bridge->handle(message);
            },
            nullptr) });
    content.messageHandlers.push_back({ .name = BridgeScripts::notifyPermissionHandler,
        .reply = platform::MessageReply::expected,
        .handler = std::make_shared<ScriptMessageProxy>(
            nullptr, [weak](platform::ScriptMessage const&, platform::ScriptReply reply) {
                if (auto const bridge = weak.lock())
                    bridge->requestPermission(std::move(reply));
                else
                    std::move(reply)({ .result = "denied" });
            }) });
    content.messageHandlers.push_back({ .name = BridgeScripts::notifyStateHandler,
        .reply = platform::MessageReply::expected,
        .handler = std::make_shared<ScriptMessageProxy>(
            nullptr, [weak](platform::ScriptMessage const&, platform::ScriptReply reply) {
                auto const bridge = weak.lock();
                if (!bridge) {
                    std::move(reply)({ .result = "denied" });
                    return;
                }
                auto const shared = std::make_shared<platform::ScriptReply>(std::move(reply));
                bridge->currentPermission(
                    [shared](std::string const& permission) { std::move (*shared)({ .result = permission }); });
            }) });
}

void NotificationBridge::handle(platform::ScriptMessage const& message)
{
    auto const body = parseFlat(message.body);
    if (!body.is_object() || !body.contains("id") || !body["id"].is_string())
        return;
    auto const pageID = stringField(body, "id");
    auto const type = stringField(body, "type");
    if (pageID.size() > longestPageID || (type != "show" && type != "close"))
        return;

    auto const key = keyFor(message, pageID);
    if (type == "close") {
        m_queue.remove(key);
        if (auto const sent = m_sent.find(key); sent != m_sent.end()) {
            m_sentInOrder.erase(sent->second.serial);
            m_sent.erase(sent);
        }
        return;
    }

    platform::NotificationRequest request {
        .identifier = key,
        .title = NotificationText::title(stringField(body, "title")),
        .body = NotificationText::body(stringField(body, "body"), message.origin),
        .sound = body.contains("silent") && body["silent"] == true ? platform::NotificationSound::none
                                                                   : platform::NotificationSound::standard,
    };
    if (auto const tag = NotificationText::title(stringField(body, "tag")); !tag.empty()) {
        request.threadIdentifier = tag;
        replaceTagged(tag, key);
    }
    remember(key, message, pageID);
    m_queue.add(std::move(request));
}

std::string NotificationBridge::keyFor(platform::ScriptMessage const& message, std::string const& pageID)
{
    auto known = m_documents.find(message.document);
    if (known == m_documents.end()) {
        std::erase_if(m_documents, [](auto const& entry) { return entry.first.expired(); });
        known = m_documents.emplace(message.document, ++m_lastNumber).first;
    }
    return std::to_string(known->second) + "-" + pageID;
}

void NotificationBridge::remember(
    std::string const& key, platform::ScriptMessage const& message, std::string const& pageID)
{
    auto const serial = ++m_lastNumber;
    Sent sent { .webView = message.webView.weak(), .document = message.document, .pageID = pageID, .serial = serial };
    if (auto const earlier = m_sent.find(key); earlier != m_sent.end())
        m_sentInOrder.erase(earlier->second.serial);
    m_sent.insert_or_assign(key, std::move(sent));
    m_sentInOrder.emplace(serial, key);
    if (m_sent.size() > mostSent) {
        auto const oldest = m_sentInOrder.begin();
        m_sent.erase(oldest->second);
        m_sentInOrder.erase(oldest);
    }
}

void NotificationBridge::replaceTagged(std::string const& tag, std::string const& key)
{
    if (auto const earlier = m_identifiersByTag.find(tag); earlier != m_identifiersByTag.end()) {
        if (earlier->second != key)
            m_queue.remove(earlier->second);
        earlier->second = key;
        return;
    }
    if (m_identifiersByTag.size() >= 2 * mostSent)
        std::erase_if(m_identifiersByTag, [&](auto const& entry) { return !m_sent.contains(entry.second); });
    m_identifiersByTag.emplace(tag, key);
}

void NotificationBridge::requestPermission(platform::ScriptReply reply)
{
    auto const shared = std::make_shared<platform::ScriptReply>(std::move(reply));
    m_environment.center.requestAuthorization(
        [weak = std::weak_ptr(m_self), shared](Authorization const& authorization) {
            auto const bridge = weak.lock();
            bool const granted = bridge && permissionFor(authorization.status) == "granted";
            if (bridge && !authorization.reason.empty())
                bridge->m_queue.report(authorization.reason);
            std::move (*shared)({ .result = granted ? "granted" : "denied" });
        });
}

void NotificationBridge::currentPermission(std::function<void(std::string)> completion)
{
    m_environment.center.authorization(
        [weak = std::weak_ptr(m_self), completion = std::move(completion)](Authorization const& authorization) {
            auto const bridge = weak.lock();
            if (!bridge)
                return;
            if (!authorization.reason.empty())
                bridge->m_queue.report(authorization.reason);
            completion(permissionFor(authorization.status));
        });
}

void NotificationBridge::pushPermission(platform::WebView& view)
{
    currentPermission([weak = view.weak()](std::string const& permission) {
        if (auto const alive = weak.lock())
            alive->evaluateJavaScript(BridgeScripts::guardedCall(BridgeScripts::setNotificationPermission, permission));
    });
}

void NotificationBridge::downloadFinished(std::filesystem::path const& file)
{
    m_queue.add({
        .identifier = "download-" + m_environment.makeUuid().string(),
        .title = "Download complete",
        .body = file.filename().string(),
        .userInfo = { { revealKey, file.string() } },
    });
}

platform::NotificationPresentation NotificationBridge::willPresent(platform::NotificationRequest const&)
{
    return m_environment.activation.isActive() ? platform::NotificationPresentation::listOnly
                                               : platform::NotificationPresentation::banner;
}

void NotificationBridge::didReceive(platform::NotificationResponse const& response)
{
    if (auto const file = response.userInfo.find(revealKey); file != response.userInfo.end())
        m_environment.workspace.reveal(file->second);
    else
        clicked(response.identifier);
}

void NotificationBridge::clicked(std::string const& key)
{
    m_environment.activation.activate();
    auto const found = m_sent.find(key);
    if (found == m_sent.end())
        return;
    auto const sent = found->second;
    auto const view = sent.webView.lock();
    if (!view)
        return;
    if (onShow)
        onShow(*view);
    sent.document->call(BridgeScripts::notificationClicked, sent.pageID);
}

}
