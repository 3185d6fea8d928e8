#include "MainWindow/FindBarController.h"

#include "Fakes/FakeWebView.h"

#include <gmock/gmock.h>

namespace tarn {
namespace {

using platform::FindDirection;
using testing::ElementsAre;
using testing::IsEmpty;

class FindBarControllerTest : public testing::Test {
protected:
    FindBarControllerTest()
    {
        bar.setWebView(*view);
        bar.onFocusPage = [this](platform::WebView& focused) { pageFocused = &focused == view.get(); };
        bar.show();
    }

    std::unique_ptr<test::FakeWebView> view { std::make_unique<test::FakeWebView>() };
    bool pageFocused { false };
    FindBarController bar;
};

TEST_F(FindBarControllerTest, EveryEditSearchesAndAnEmptyFieldDoesNot)
{
    bar.setText("k");
    bar.setText("ka");
    EXPECT_FALSE(view->findOptions.matchCase);
    EXPECT_TRUE(view->findOptions.wraps);
    view->findCompletion(false);
    EXPECT_EQ(bar.status(), "Not found");
    bar.setText("");
    bar.find(FindDirection::backward);
    EXPECT_EQ(bar.status(), "Not found") << "the last answer stays";
    bar.setText("a");
    bar.find(FindDirection::backward);
    view->findCompletion(true);
    EXPECT_EQ(bar.status(), "");
    EXPECT_THAT(view->events, ElementsAre("find k", "find ka", "find a", "find backward a"));
}

TEST_F(FindBarControllerTest, HidingGoesBackToThePageAndKeepsTheText)
{
    bar.setText("x");
    view->findCompletion(false);
    bar.find(FindDirection::forward);
    bar.hide();
    view->findCompletion(false);
    EXPECT_EQ(bar.status(), "") << "the late answer is of no interest";
    EXPECT_FALSE(bar.isVisible());
    EXPECT_TRUE(pageFocused);
    EXPECT_EQ(bar.text(), "x");
    bar.find(FindDirection::forward);
    EXPECT_EQ(view->events.back(), "find x");
}

TEST_F(FindBarControllerTest, WithoutAPageNothingHappens)
{
    bar.setText("x");
    view.reset();
    bar.find(FindDirection::forward);
    bar.setText("y");
    bar.hide();
    EXPECT_FALSE(bar.isVisible());
    EXPECT_FALSE(pageFocused);
}

}
}
