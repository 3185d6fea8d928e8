#pragma once

#include "Platform/WebView.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

namespace tarn::test {

// What the core relies on in a web view. It runs on the fake and on the real one, so that the fake cannot drift.
// A harness makes a view on a store, serves numbered pages, and lets time pass:
//   platform::WebView& view();
//   void settle(std::function<bool()> const& settled);
//   void crash();       ends the page's process
//   static Url page(int number);
template <typename Harness> class WebViewContract : public testing::Test, protected platform::NavigationDelegate {
protected:
    WebViewContract()
    {
        view().setNavigationDelegate(this);
        view().setOnTitleChange([this] { ++titleChanges; });
    }

    platform::WebView& view() { return harness.view(); }
    void load(int page)
    {
        view().load({ .url = Harness::page(page) });
        settle();
    }
    // Until what was asked for has been decided on and, if it may, has come.
    void settle()
    {
        auto const before = events.size();
        harness.settle([&] {
            auto const isNew = [&](char const* kind) {
                return std::any_of(events.begin() + static_cast<std::ptrdiff_t>(before), events.end(),
                    [&](auto const& event) { return event.starts_with(kind); });
            };
            return isNew("decide")
                && (policy == platform::NavigationPolicy::cancel
                    || (isNew("finish") && view().title().value_or("") != ""));
        });
    }

    using NavigationDelegate::decidePolicy;
    platform::NavigationPolicy decidePolicy(platform::WebView&, platform::NavigationAction const& action) override
    {
        events.push_back("decide " + action.url);
        return policy;
    }
    void didCommit(platform::WebView& committed) override { events.push_back("commit " + committed.url()->string()); }
    void didFinish(platform::WebView& finished) override { events.push_back("finish " + finished.url()->string()); }
    void webContentProcessDidTerminate(platform::WebView&, platform::ProcessTermination const&) override
    {
        events.emplace_back("terminated");
    }

    Harness harness;
    platform::NavigationPolicy policy { platform::NavigationPolicy::allow };
    std::vector<std::string> events;
    int titleChanges { 0 };
};

TYPED_TEST_SUITE_P(WebViewContract);

TYPED_TEST_P(WebViewContract, ALoadIsDecidedCommittedAndFinished)
{
    EXPECT_FALSE(this->view().url());
    this->load(1);
    auto const url = TypeParam::page(1).string();
    EXPECT_THAT(this->events, testing::ElementsAre("decide " + url, "commit " + url, "finish " + url));
    EXPECT_EQ(this->view().url()->string(), url);
    EXPECT_GT(this->titleChanges, 0);
    EXPECT_TRUE(this->view().title());
}

TYPED_TEST_P(WebViewContract, WhatIsCancelledDoesNotCome)
{
    this->load(1);
    this->events.clear();
    this->policy = platform::NavigationPolicy::cancel;
    this->load(2);
    EXPECT_THAT(this->events, testing::ElementsAre("decide " + TypeParam::page(2).string()));
    EXPECT_EQ(this->view().url()->string(), TypeParam::page(1).string());
}

TYPED_TEST_P(WebViewContract, TheHistoryGoesBothWays)
{
    this->load(1);
    EXPECT_FALSE(this->view().canGoBack());
    this->load(2);
    EXPECT_TRUE(this->view().canGoBack());
    EXPECT_FALSE(this->view().canGoForward());
    this->view().goBack();
    this->settle();
    EXPECT_EQ(this->view().url()->string(), TypeParam::page(1).string());
    EXPECT_TRUE(this->view().canGoForward());
}

TYPED_TEST_P(WebViewContract, ACrashedPageKeepsItsAddressAndComesBack)
{
    this->load(1);
    this->events.clear();
    this->harness.crash();
    EXPECT_THAT(this->events, testing::ElementsAre("terminated"));
    EXPECT_EQ(this->view().url()->string(), TypeParam::page(1).string());
    this->view().reload();
    this->settle();
    auto const url = TypeParam::page(1).string();
    EXPECT_THAT(this->events, testing::ElementsAre("terminated", "decide " + url, "commit " + url, "finish " + url));
}

TYPED_TEST_P(WebViewContract, TheZoomStaysAcrossPages)
{
    this->view().setPageZoom(1.2);
    this->load(1);
    this->load(2);
    EXPECT_DOUBLE_EQ(this->view().pageZoom(), 1.2);
}

REGISTER_TYPED_TEST_SUITE_P(WebViewContract, ALoadIsDecidedCommittedAndFinished, WhatIsCancelledDoesNotCome,
    TheHistoryGoesBothWays, ACrashedPageKeepsItsAddressAndComesBack, TheZoomStaysAcrossPages);

}
