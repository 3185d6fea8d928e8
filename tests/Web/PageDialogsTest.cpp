#include "Web/WebTest.h"

#include <adwaita.h>
#include <gmock/gmock.h>

#include <fstream>

namespace tarn {
namespace {

class PageDialogsTest : public test::WebTest {
protected:
    PageDialogsTest()
    {
        launch();
        open(GoogleApp::mail);
        waitUntil([&] { return window().is_active(); }, "active window");
    }

    // Lets the page run the script on its own, as the dialog would hold up whoever waits for it.
    void start(gtk::WebView& page, std::string const& script)
    {
        page.evaluateJavaScript(
            "window.answer = 'none'; setTimeout(() => { window.answer = String(" + script + "); })");
    }
    std::string answer(gtk::WebView& page) { return evaluate(page, "window.answer"); }

    static std::vector<Gtk::Window*> dialogs()
    {
        std::vector<Gtk::Window*> result;
        for (auto* const toplevel : Gtk::Window::list_toplevels()) {
            if (toplevel->is_visible() && toplevel->get_modal())
                result.push_back(toplevel);
        }
        return result;
    }
    static Gtk::Window* freeDialog()
    {
        for (auto* const toplevel : Gtk::Window::list_toplevels()) {
            if (toplevel->is_visible() && ADW_IS_MESSAGE_DIALOG(toplevel->gobj()) && !toplevel->get_transient_for())
                return toplevel;
        }
        return nullptr;
    }
    // The sheet of the main window that has the keyboard.
    Gtk::Window& sheet()
    {
        waitUntil(
            [&] {
                return dialogs().size() == 1 && dialogs()[0]->is_active()
                    && dialogs()[0]->get_transient_for() == &window();
            },
            "sheet");
        return *dialogs().at(0);
    }
    void waitUntilClosed()
    {
        waitUntil([&] { return dialogs().empty(); }, "closed dialog");
    }
    std::string file(std::string const& name)
    {
        auto const folderOfFiles = folder.path() / "files";
        std::filesystem::create_directories(folderOfFiles);
        std::ofstream(folderOfFiles / name) << "This is " << name;
        return (folderOfFiles / name).string();
    }
};

TEST_F(PageDialogsTest, AnswersReachThePageAndTheOthersGoOn)
{
    auto& mail = view(GoogleApp::mail);
    auto& keep = view(GoogleApp::keep);
    waitForPage(GoogleApp::keep);
    struct Case {
        char const* script;
        char const* keys;
        char const* answer;
    };
    for (auto const& row : std::vector<Case> {
             { "alert('Hello')", "Return", "undefined" },
             { "confirm('Sure?')", "Return", "true" },
             { "confirm('Sure?')", "Escape", "false" },
             { "confirm('Sure?')", "alt+c", "false" },
             { "prompt('Name?', 'Ada')", "Return", "Ada" },
             { "prompt('Name?', 'Ada')", "B o Return", "Bo" },
             { "prompt('Name?')", "Return", "" },
             { "prompt('Name?', 'Ada')", "Escape", "null" },
         }) {
        start(mail, row.script);
        sheet();
        EXPECT_EQ(evaluate(keep, "new Promise(r => setTimeout(() => r('ran'), 20))"), "ran");
        press(row.keys);
        waitUntilClosed();
        EXPECT_EQ(answer(mail), row.answer) << row.script << " " << row.keys;
    }
}

TEST_F(PageDialogsTest, APageThatAsksForEverIsStopped)
{
    auto& mail = view(GoogleApp::mail);
    start(mail, "(() => { let n = 0; while (n < 1000 && !confirm('Again ' + n)) ++n; return n; })()");
    sheet();
    press("Escape");
    waitUntil(
        [&] {
            auto const open = dialogs();
            return open.size() == 1 && open[0]->is_active()
                && adw_message_dialog_get_heading(ADW_MESSAGE_DIALOG(open[0]->gobj())) == std::string_view("Again 1");
        },
        "the second");
    press("shift+Tab shift+Tab space Escape");
    waitUntil([&] { return dialogs().empty() && answer(mail) == "1000"; }, "the end of it");
}

TEST_F(PageDialogsTest, TwoPagesAskAtOnceAndAHiddenOneStandsFree)
{
    auto& mail = view(GoogleApp::mail);
    auto& keep = view(GoogleApp::keep);
    waitForPage(GoogleApp::keep);
    start(mail, "confirm('Mail asks')");
    sheet();
    start(keep, "confirm('Keep asks')");
    waitUntil([&] { return freeDialog() && freeDialog()->is_active(); }, "free dialog");
    press("Return");
    waitUntil([&] { return !freeDialog(); }, "answered");
    EXPECT_EQ(answer(keep), "true");
    sheet().present();
    press("Escape");
    waitUntilClosed();
    EXPECT_EQ(answer(mail), "false");
}

TEST_F(PageDialogsTest, APageThatEndsTakesItsDialogsAlong)
{
    auto& mail = view(GoogleApp::mail);
    start(mail, "confirm('Sure?')");
    sheet();
    test::killWebProcesses();
    waitUntilClosed();
    waitForPage(GoogleApp::mail);

    start(mail, "prompt('Sure?')");
    sheet();
    profiles().setActive(profiles().create("Work", { GoogleApp::mail }).id);
    waitUntilClosed();
    waitForPage(GoogleApp::mail);
    start(view(GoogleApp::mail), "confirm('Sure?')");
    sheet();
    press("Return");
    waitUntilClosed();
    EXPECT_EQ(answer(view(GoogleApp::mail)), "true");
}

TEST_F(PageDialogsTest, LeavingCanBeRefused)
{
    auto& mail = view(GoogleApp::mail);
    click(mail, "#ask-before-leaving");
    waitUntil([&] { return evaluate(mail, "document.querySelector('#ask-before-leaving').checked") == "true"; }, "box");
    auto const before = mail.url();
    auto const elsewhere = *Url::parse("https://keep.google.com/");

    mail.load({ .url = elsewhere, .timeout = std::chrono::seconds(1) });
    sheet();
    auto const timer = runLoop.now() + std::chrono::milliseconds(1500);
    waitUntil([&] { return runLoop.now() > timer; }, "more than the time-out");
    press("Escape");
    waitUntilClosed();
    EXPECT_EQ(evaluate(mail, "location.host"), "mail.google.com");
    EXPECT_EQ(mail.url(), before);

    mail.load({ .url = elsewhere });
    sheet();
    press("Return");
    waitUntilClosed();
    waitUntil([&] { return mail.url()->host() == "keep.google.com" && mail.title() != ""; }, "the other page");
}

TEST_F(PageDialogsTest, FilesAreChosen)
{
    auto& drive = view(GoogleApp::drive);
    open(GoogleApp::drive);
    auto const one = file("one.txt");
    file("two.txt");
    auto const names = [&](char const* selector) {
        return evaluate(drive,
            std::string("Promise.all([...document.querySelector('") + selector
                + "').files].map(async f => f.name + ': ' + await f.text())).then(all => all.sort().join(', '))");
    };
    evaluate(drive, "document.querySelector('#picture').removeAttribute('accept')");

    click(drive, "#picture");
    sheet();
    press("Escape");
    waitUntilClosed();
    EXPECT_EQ(names("#picture"), "");

    click(drive, "#picture");
    sheet();
    type(one);
    press("Return");
    waitUntilClosed();
    waitUntil([&] { return names("#picture") == "one.txt: This is one.txt"; }, "the file: " + names("#picture"));
}

}
}
