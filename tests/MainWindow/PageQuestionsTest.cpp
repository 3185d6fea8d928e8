#include "MainWindow/PageQuestions.h"

#include "Fakes/FakePanels.h"
#include "Fakes/FakeWebView.h"

#include <gmock/gmock.h>

namespace tarn {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Questions final : public PageQuestions {
public:
    using PageQuestions::pageEnded;
    using PageQuestions::PageQuestions;
};

class PageQuestionsTest : public testing::Test {
protected:
    void alert(platform::WebView& asking, char const* text = "Hello")
    {
        questions.runJavaScriptAlert(asking, text, record<std::monostate>([](auto) { return "done"; }));
    }
    void confirm(platform::WebView& asking)
    {
        questions.runJavaScriptConfirm(
            asking, "Sure?", record<bool>([](bool answer) { return answer ? "true" : "false"; }));
    }
    void prompt(platform::WebView& asking, std::optional<std::string> const& defaultText = {})
    {
        questions.runJavaScriptTextInput(asking, "Name?", defaultText,
            record<std::optional<std::string>>(
                [](auto const& text) { return text ? "\"" + *text + "\"" : std::string("null"); }));
    }
    std::vector<std::string> titles() const
    {
        std::vector<std::string> result;
        for (auto const& button : panels.alerts.back().panel.buttons)
            result.push_back(button.title);
        return result;
    }

    template <typename Answer> Reply<Answer> record(std::function<std::string(Answer)> text)
    {
        return { [this, text](Answer answer) { answers.push_back(text(std::move(answer))); }, {} };
    }

    // What is open at the end is still answered into it.
    std::vector<std::string> answers;
    test::FakePanels panels;
    std::vector<std::string> log;
    Questions questions { panels, [this](std::string const& line) { log.push_back(line); } };
    test::FakeWebView view;
    test::FakeWebView other;
};

TEST_F(PageQuestionsTest, DialogsHangOnTheViewAndSayOnlyWhatThePageSays)
{
    struct Case {
        std::function<void()> ask;
        char const* message;
        std::vector<std::string> buttons;
        std::optional<std::string> textField;
    };
    std::vector<std::string> const both { "OK", "Cancel" };
    for (auto const& row : std::vector<Case> {
             { [&] { alert(view); }, "Hello", { "OK" }, {} },
             { [&] { confirm(view); }, "Sure?", both, {} },
             { [&] { prompt(view); }, "Name?", both, "" },
             { [&] { prompt(view, "Ada"); }, "Name?", both, "Ada" },
         }) {
        questions.pageEnded(view);
        row.ask();
        auto const& shown = panels.alerts.back();
        EXPECT_EQ(shown.panel.message, row.message);
        EXPECT_EQ(shown.panel.informativeText, "");
        EXPECT_EQ(titles(), row.buttons);
        EXPECT_EQ(shown.panel.textField, row.textField);
        EXPECT_EQ(shown.parent, platform::SheetParent(&view));
    }
}

TEST_F(PageQuestionsTest, TheAnswersReachThePage)
{
    constexpr std::size_t ok = 0;
    constexpr std::size_t cancel = 1;
    alert(view);
    panels.press(ok);
    for (auto const button : { ok, cancel }) {
        confirm(view);
        panels.press(button);
        prompt(view, "Ada");
        panels.press(button, "Bo");
        prompt(view);
        panels.press(button);
    }
    EXPECT_THAT(answers, ElementsAre("done", "true", "\"Bo\"", "\"\"", "false", "null", "null"));
}

TEST_F(PageQuestionsTest, APageThatAsksAgainCanBeStopped)
{
    alert(view);
    EXPECT_EQ(panels.alerts.back().panel.checkBox, std::nullopt);
    panels.press(0);
    confirm(view);
    EXPECT_EQ(panels.alerts.back().panel.checkBox, JavaScriptDialogs::stopAsking);
    panels.press(0, {}, true);
    confirm(view);
    prompt(view);
    alert(view);
    EXPECT_THAT(panels.alerts, IsEmpty());
    EXPECT_THAT(answers, ElementsAre("done", "true", "false", "null", "done"));

    alert(other);
    EXPECT_EQ(panels.alerts.size(), 1) << "only that page is stopped";
    questions.pageEnded(view);
    alert(view);
    EXPECT_EQ(panels.alerts.back().panel.checkBox, std::nullopt) << "the next page starts anew";
}

TEST_F(PageQuestionsTest, TwoPagesAskAtOnceAndAnEndedOneTakesItsDialogsAlong)
{
    confirm(view);
    confirm(other);
    questions.runOpenPanel(view, { .allowsMultipleSelection = true },
        record<std::vector<std::filesystem::path>>([](auto const& files) { return std::to_string(files.size()); }));
    questions.pageEnded(view);
    EXPECT_THAT(answers, ElementsAre("false", "0"));
    panels.press(0);
    EXPECT_THAT(answers, ElementsAre("false", "0", "true"));
}

TEST_F(PageQuestionsTest, AFileInputOpensThePanelItNeeds)
{
    auto const choose = [&](platform::OpenPanelParameters const& parameters) {
        questions.runOpenPanel(view, parameters, { [](auto const&) {}, {} });
        auto const& shown = panels.openPanels.back();
        EXPECT_EQ(shown.panel.allowsMultipleSelection, parameters.allowsMultipleSelection);
        EXPECT_EQ(shown.panel.canChooseDirectories, parameters.allowsDirectories);
        EXPECT_FALSE(shown.panel.imagesOnly);
        EXPECT_EQ(shown.parent, platform::SheetParent(&view));
    };
    choose({ .allowsMultipleSelection = true });
    choose({ .allowsDirectories = true });
}

TEST_F(PageQuestionsTest, AFailedPrintIsLoggedAndShown)
{
    questions.didFailToPrint(view, "Out of paper");
    EXPECT_THAT(log, ElementsAre("[Print] failed: Out of paper"));
    EXPECT_EQ(panels.alerts.back().panel.informativeText, "Out of paper");
}

TEST_F(PageQuestionsTest, LeavingIsAsked)
{
    for (std::size_t const button : { 0, 1 }) {
        questions.runBeforeUnloadConfirm(view, record<bool>([](bool leaves) { return leaves ? "leaves" : "stays"; }));
        EXPECT_THAT(titles(), ElementsAre("Leave", "Stay"));
        panels.press(button);
    }
    EXPECT_THAT(answers, ElementsAre("leaves", "stays"));
}

}
}
