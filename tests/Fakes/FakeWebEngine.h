#pragma once

#include "Fakes/FakeWebView.h"
#include "Platform/WebEngine.h"

#include <deque>
#include <map>
#include <utility>

namespace tarn::test {

class FakeWebsiteDataStore final : public platform::WebsiteDataStore {
public:
    explicit FakeWebsiteDataStore(Uuid const& id)
        : m_id(id)
    {
    }
    Uuid identifier() const override { return m_id; }

private:
    Uuid m_id;
};

// Makes fake views. Like the real one it refuses to remove a store that is alive.
class FakeWebEngine final : public platform::WebEngine {
public:
    std::shared_ptr<platform::WebsiteDataStore> dataStore(Uuid const& id) override
    {
        auto store = stores[id].lock();
        if (!store) {
            store = std::make_shared<FakeWebsiteDataStore>(id);
            stores[id] = store;
        }
        return store;
    }

    void removeDataStore(Uuid const& id, std::function<void(std::optional<std::string>)> completion) override
    {
        auto const store = stores.find(id);
        bool const inUse = store != stores.end() && !store->second.expired();
        if (!inUse && removalFailures == 0) {
            removed.push_back(id);
            stores.erase(id);
        }
        auto const fails = inUse || removalFailures > 0;
        if (removalFailures > 0)
            --removalFailures;
        ++removalAttempts;
        removals.push_back([fails, done = std::move(completion)] {
            done(fails ? std::optional<std::string>("in use") : std::nullopt);
        });
    }

    std::unique_ptr<platform::WebView> makeWebView(platform::WebViewConfiguration const& configuration) override
    {
        configurations.push_back(configuration);
        // What is recorded must not keep the store alive.
        configurations.back().dataStore.reset();
        storeOfView.push_back(configuration.dataStore->identifier());
        auto view = std::make_unique<FakeWebView>();
        views.push_back(view.get());
        return view;
    }

    // Hands over the answers that wait.
    void answerRemovals()
    {
        for (auto const& answer : std::exchange(removals, {}))
            answer();
    }

    // In the order they were made; those of an ended pool dangle.
    std::vector<FakeWebView*> views;
    std::vector<Uuid> storeOfView;
    std::vector<platform::WebViewConfiguration> configurations;
    std::map<Uuid, std::weak_ptr<platform::WebsiteDataStore>> stores;
    std::vector<std::function<void()>> removals;
    std::vector<Uuid> removed;
    int removalFailures { 0 };
    int removalAttempts { 0 };
};

}
