#pragma once

#include "Bridge/NotificationQueue.h"
#include "Platform/Activation.h"
#include "Platform/NotificationCenter.h"
#include "Platform/ScriptMessage.h"
#include "Platform/UserContentController.h"
#include "Platform/WebView.h"
#include "Platform/Workspace.h"
#include "Support/Uuid.h"

#include <cstdint>
#include <deque>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <string>

namespace tarn {

// Turns the pages' notifications into the desktop's, tells the pages what the desktop allows, and leads a click back to
// the page that notified. One for the whole application: permission is the application's, for all profiles and apps.
class NotificationBridge final : public platform::NotificationCenterDelegate {
public:
    struct Environment {
        platform::NotificationCenter& center;
        platform::Activation& activation;
        platform::Workspace& workspace;
        std::function<Uuid()> makeUuid;
        Log log;
    };
    // Notifications that a click can still find its page for; the oldest are forgotten first.
    static constexpr std::size_t mostSent { 2000 };

    explicit NotificationBridge(Environment);
    ~NotificationBridge();
    NotificationBridge(NotificationBridge const&) = delete;
    NotificationBridge& operator=(NotificationBridge const&) = delete;

    // A notification of that view was clicked.
    std::function<void(platform::WebView&)> onShow;

    // Asks the user, where the desktop asks at all and has not done so yet.
    void askOnFirstLaunch();
    // Replaces what the pages of a view notify with. What is installed may outlive the bridge.
    void install(platform::UserContentController&);
    void handle(platform::ScriptMessage const&);
    // "granted", "denied" or "default".
    void currentPermission(std::function<void(std::string)> completion);
    void pushPermission(platform::WebView&);
    // A click on the notice shows the file.
    void downloadFinished(std::filesystem::path const&);

    platform::NotificationPresentation willPresent(platform::NotificationRequest const&) override;
    void didReceive(platform::NotificationResponse const&) override;

private:
    struct Sent {
        std::weak_ptr<platform::WebView> webView;
        std::shared_ptr<platform::ScriptDocument> document;
        std::string pageID;
        std::uint64_t serial;
    };

    void requestPermission(platform::ScriptReply);
    std::string keyFor(platform::ScriptMessage const&, std::string const& pageID);
    void remember(std::string const& key, platform::ScriptMessage const&, std::string const& pageID);
    void replaceTagged(std::string const& tag, std::string const& key);
    void clicked(std::string const& key);

    Environment m_environment;
    NotificationQueue m_queue;
    std::map<std::string, Sent> m_sent;
    std::map<std::uint64_t, std::string> m_sentInOrder;
    std::map<std::string, std::string> m_identifiersByTag;
    // Identity numbers of the documents that have posted: their own ids repeat from one to the next.
    std::map<std::weak_ptr<platform::ScriptDocument>, std::uint64_t, std::owner_less<>> m_documents;
    std::uint64_t m_lastNumber { 0 };
    // What is installed in the views refers to this; it ends with the bridge.
    std::shared_ptr<NotificationBridge> m_self { this, [](NotificationBridge*) {} };
};

}
