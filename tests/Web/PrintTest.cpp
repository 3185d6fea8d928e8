#include "Web/WebTest.h"

#include <gmock/gmock.h>
#include <gtk/gtkunixprint.h>

#include <cstdlib>

namespace tarn {
namespace {

using testing::HasSubstr;

class PrintTest : public test::WebTest {
protected:
    PrintTest()
    {
        // Where the dialog offers to put the file.
        std::filesystem::create_directory(paper);
        std::filesystem::current_path(paper);
        launch();
        open(GoogleApp::keep);
        waitUntil([&] { return window().is_active(); }, "active window");
    }
    ~PrintTest() override { std::filesystem::current_path(m_before); }

    static std::vector<Gtk::Window*> printDialogs()
    {
        auto all = Gtk::Window::list_toplevels();
        std::erase_if(
            all, [](auto* toplevel) { return !GTK_IS_PRINT_UNIX_DIALOG(toplevel->gobj()) || !toplevel->is_visible(); });
        return all;
    }
    // The dialog's first printer is a file.
    std::string printToFile()
    {
        waitUntil([&] { return printDialogs().size() == 1 && printDialogs()[0]->is_active(); }, "print dialog");
        EXPECT_EQ(printDialogs().at(0)->get_transient_for(), &window());
        auto* const dialog = GTK_PRINT_UNIX_DIALOG(printDialogs().at(0)->gobj());
        press("Tab");
        press("Down space");
        waitUntil([&] { return gtk_print_unix_dialog_get_selected_printer(dialog) != nullptr; }, "chosen printer");
        press("alt+p");
        auto const file = paper / "output.pdf";
        waitUntil([&] { return printDialogs().empty(); }, "closed dialog");
        waitUntil([&] { return read(file).find("%%EOF") != std::string::npos; }, "file");
        EXPECT_EQ(std::system(("pdftotext '" + file.string() + "' '" + (paper / "text").string() + "'").c_str()), 0);
        std::filesystem::remove(file);
        return read(paper / "text");
    }

    std::filesystem::path const paper { folder.path() / "paper" };

private:
    std::filesystem::path m_before { std::filesystem::current_path() };
};

TEST_F(PrintTest, ThePageTheCommandAndAFramePrintWhatTheyShow)
{
    auto& keep = view(GoogleApp::keep);
    evaluate(keep,
        "new Promise(done => { document.body.innerHTML = '<p>Tea for the paper</p><iframe srcdoc=\"<p>In the "
        "frame</p>\"></iframe>'; document.querySelector('iframe').onload = done; })");

    keep.evaluateJavaScript("print(); print()");
    EXPECT_THAT(printToFile(), HasSubstr("Tea for the paper"));
    press("ctrl+p");
    EXPECT_THAT(printToFile(), HasSubstr("Tea for the paper"));
    keep.evaluateJavaScript("document.querySelector('iframe').contentWindow.print()");
    // The engine prints nothing less than the page without its own, blocking dialog.
    EXPECT_THAT(printToFile(), HasSubstr("In the frame"));
}

TEST_F(PrintTest, TheDialogEndsWithItsPage)
{
    view(GoogleApp::keep).evaluateJavaScript("print()");
    waitUntil([&] { return printDialogs().size() == 1; }, "print dialog");
    profiles().setActive(profiles().create("Work", { GoogleApp::mail }).id);
    EXPECT_TRUE(printDialogs().empty());
}

}
}
