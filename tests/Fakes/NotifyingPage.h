#pragma once

#include "Bridge/NotificationBridge.h"
#include "Fakes/FakeDesktop.h"
#include "Fakes/FakeNotificationCenter.h"
#include "Fakes/FakeWebView.h"

#include <memory>
#include <string>

namespace tarn::test {

// A page that posts to the bridge, all around it faked. It does not hear what the bridge calls in it.
struct NotifyingPage {
    void post(std::string const& body) { post(body, platform::FrameKind::main, "https://mail.google.com"); }
    void post(std::string const& body, platform::FrameKind frame, std::string const& origin)
    {
        bridge.handle({ .webView = view, .document = document, .frame = frame, .origin = origin, .body = body });
    }

    class DeafDocument final : public platform::ScriptDocument {
        void call(std::string const&, std::string const&) override { }
    };

    FakeNotificationCenter center {};
    FakeActivation activation {};
    FakeWorkspace workspace {};
    FakeWebView view {};
    std::shared_ptr<platform::ScriptDocument> document { std::make_shared<DeafDocument>() };
    NotificationBridge bridge { { .center = center,
        .activation = activation,
        .workspace = workspace,
        .makeUuid = &Uuid::random,
        .log = [](std::string const&) {} } };
};

}
