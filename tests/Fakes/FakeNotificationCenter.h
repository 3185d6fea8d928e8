#pragma once

#include "Platform/Activation.h"
#include "Platform/NotificationCenter.h"

#include <algorithm>
#include <deque>
#include <string>
#include <utility>
#include <vector>

namespace tarn::test {

// A notification centre on paper: it records what it is given, and the test plays the desktop and the user.
class FakeNotificationCenter final : public platform::NotificationCenter {
public:
    void setDelegate(platform::NotificationCenterDelegate* newDelegate) override { delegate = newDelegate; }
    void authorization(std::function<void(platform::Authorization)> completion) override
    {
        questions.push_back([this, completion] { completion({ status, reason }); });
    }
    void requestAuthorization(std::function<void(platform::Authorization)> completion) override
    {
        ++requests;
        if (status == platform::AuthorizationStatus::notDetermined)
            status = decision;
        authorization(std::move(completion));
    }
    void add(platform::NotificationRequest const& request,
        std::function<void(std::optional<std::string>)> completion) override
    {
        presentations.push_back(delegate->willPresent(request));
        std::erase_if(shown, [&](auto const& one) { return one.identifier == request.identifier; });
        shown.push_back(request);
        completions.push_back(std::move(completion));
    }
    void remove(std::string const& identifier) override
    {
        std::erase_if(shown, [&](auto const& one) { return one.identifier == identifier; });
    }

    // Answers what waits, also what the answers ask in turn.
    void answerQuestions()
    {
        while (!questions.empty()) {
            auto const question = questions.front();
            questions.pop_front();
            question();
        }
    }
    void completeAdds(std::optional<std::string> const& error = std::nullopt)
    {
        while (!completions.empty()) {
            auto const completion = completions.front();
            completions.pop_front();
            completion(error);
        }
    }
    void click(platform::NotificationRequest const& request)
    {
        delegate->didReceive({ request.identifier, request.userInfo });
    }
    std::vector<std::string> titles() const
    {
        std::vector<std::string> titles;
        for (auto const& one : shown)
            titles.push_back(one.title);
        return titles;
    }

    platform::NotificationCenterDelegate* delegate { nullptr };
    platform::AuthorizationStatus status { platform::AuthorizationStatus::authorized };
    // What the user will say when asked.
    platform::AuthorizationStatus decision { platform::AuthorizationStatus::authorized };
    std::string reason;
    int requests { 0 };
    std::deque<platform::NotificationRequest> shown;
    std::vector<platform::NotificationPresentation> presentations;
    std::deque<std::function<void()>> questions;
    std::deque<std::function<void(std::optional<std::string>)>> completions;
};

class FakeActivation final : public platform::Activation {
public:
    bool isActive() const override { return active; }
    void activate() override { ++activations; }

    bool active { false };
    int activations { 0 };
};

}
