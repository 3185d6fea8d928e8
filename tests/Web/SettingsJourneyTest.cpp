#include "Web/WebTest.h"

#include <adwaita.h>
#include <gdk-pixbuf/gdk-pixbuf.h>
#include <gtkmm/label.h>
#include <gtkmm/text.h>

#include <algorithm>

namespace tarn::test {
namespace {

// With the keyboard alone.
class SettingsJourneyTest : public WebTest {
protected:
    SettingsJourneyTest()
    {
        for (auto const& file : { firstPicture, secondPicture }) {
            auto* const pixbuf = gdk_pixbuf_new(GDK_COLORSPACE_RGB, FALSE, 8, 40, 80);
            gdk_pixbuf_fill(pixbuf, 0x204080ff);
            gdk_pixbuf_save(pixbuf, file.c_str(), "png", nullptr, nullptr);
            g_object_unref(pixbuf);
        }
    }

    static Gtk::Window* activeWindow()
    {
        for (auto* const window : Gtk::Window::list_toplevels()) {
            if (window->get_visible() && window->is_active())
                return window;
        }
        return nullptr;
    }

    void waitForWindow(std::string const& title)
    {
        waitUntil(
            [&] { return activeWindow() && std::string(activeWindow()->get_title()) == title; }, "window " + title);
    }

    // What a button, a row or a field is called.
    static std::string nameOf(Gtk::Widget& widget)
    {
        if (ADW_IS_PREFERENCES_ROW(widget.gobj()))
            return adw_preferences_row_get_title(ADW_PREFERENCES_ROW(widget.gobj()));
        auto const* const button = dynamic_cast<Gtk::Button*>(&widget);
        std::string name = button ? button->get_label().raw() : std::string();
        std::erase(name, '_');
        return name.empty() ? std::string(widget.get_tooltip_text()) : name;
    }

    static bool isInRow(Gtk::Widget& widget, std::string const& title)
    {
        auto* const row = gtk_widget_get_ancestor(GTK_WIDGET(widget.gobj()), ADW_TYPE_PREFERENCES_ROW);
        return row && adw_preferences_row_get_title(ADW_PREFERENCES_ROW(row)) == title;
    }

    // Presses the key until the focus is on a widget of that name, in the row of that title if there is one.
    void walkTo(std::string const& key, std::string const& name, std::string const& row = {})
    {
        auto* const window = activeWindow();
        ASSERT_TRUE(window);
        for (int presses = 0; presses < 60; ++presses) {
            auto* const focused = window->get_focus();
            if (focused && nameOf(*focused) == name && (row.empty() || isInRow(*focused, row)))
                return;
            press(key);
            waitUntil([&] { return window->get_focus() != focused; }, "another widget with the focus, for " + name);
        }
        FAIL() << name << " " << row << " is not in reach of the keyboard";
    }

    void choosePicture(std::filesystem::path const& file)
    {
        auto const before = avatarFiles();
        press("alt+h");
        waitForWindow("Choose a picture for this profile");
        type(file.string());
        press("Return");
        waitUntil([&] { return avatarFiles() > before; }, "imported picture");
    }

    std::ptrdiff_t avatarFiles()
    {
        auto const avatars = profiles().folder() / "avatars";
        return std::filesystem::exists(avatars) ? std::distance(std::filesystem::directory_iterator(avatars), {}) : 0;
    }

    std::filesystem::path const firstPicture { folder / "first.png" };
    std::filesystem::path const secondPicture { folder / "second.png" };
};

TEST_F(SettingsJourneyTest, AProfileIsMadeUsedChangedAndDeleted)
{
    launch();
    open(GoogleApp::mail);
    waitUntil([&] { return window().is_active(); }, "active window");
    press("ctrl+comma");
    waitForWindow("Settings");

    press("alt+n");
    waitForWindow("New Profile");
    type("  Client A ");
    choosePicture(firstPicture);
    waitForWindow("New Profile");
    walkTo("Tab", "Keep");
    press("space");
    walkTo("Down", "Contacts");
    press("space");
    press("alt+n");
    press("Return");
    waitUntil([&] { return profiles().profiles().size() == 2; }, "new profile");
    waitForWindow("Settings");
    auto const made = profiles().profiles().back();
    EXPECT_EQ(made.name, "Client A");
    EXPECT_EQ(made.enabledApps,
        (std::vector<GoogleApp> {
            GoogleApp::mail, GoogleApp::calendar, GoogleApp::drive, GoogleApp::gemini, GoogleApp::tasks }));
    EXPECT_TRUE(made.avatarFile && profiles().avatarImage(made));

    walkTo("Tab", "Switch", "Client A");
    press("space");
    waitUntil([&] { return profiles().activeID() == made.id; }, "switch");
    waitForPage(GoogleApp::mail);
    EXPECT_TRUE(std::filesystem::exists(dataFolder(made.id)));

    walkTo("Tab", "Edit…", "Client A");
    press("space");
    waitForWindow("Edit Profile");
    // The whole name is selected.
    type("Client B");
    choosePicture(secondPicture);
    waitForWindow("Edit Profile");
    press("alt+s");
    waitUntil([&] { return profiles().profiles().back().name == "Client B"; }, "other name");
    EXPECT_NE(profiles().profiles().back().avatarFile, made.avatarFile);
    EXPECT_EQ(avatarFiles(), 1);

    waitForWindow("Settings");
    walkTo("Tab", "Edit…", "Client B");
    press("space");
    waitForWindow("Edit Profile");
    press("alt+r");
    press("alt+s");
    waitUntil([&] { return !profiles().profiles().back().avatarFile; }, "no picture");
    EXPECT_EQ(avatarFiles(), 0);

    waitForWindow("Settings");
    walkTo("Tab", "Delete profile", "Client B");
    press("space");
    waitUntil([&] { return activeWindow() && ADW_IS_MESSAGE_DIALOG(activeWindow()->gobj()); }, "question");
    press("alt+d");
    waitUntil([&] { return profiles().profiles().size() == 1; }, "deleted profile");
    waitUntil(
        [&] { return !std::filesystem::exists(dataFolder(made.id)) && !std::filesystem::exists(cacheFolder(made.id)); },
        "deleted data");

    waitForWindow("Settings");
    press("alt+g");
    press("alt+s");
    waitUntil([&] { return loginItem.enabled; }, "start at log-in");
    press("Escape");
    waitUntil([&] { return activeWindow() == &window(); }, "main window");
    // The last item of the Profiles menu leads to the profiles, whatever was open.
    press("alt+p");
    press("Up");
    press("Return");

    // Cancelling leaves nothing, and Escape closes one window after the other.
    waitForWindow("Settings");
    press("alt+n");
    waitForWindow("New Profile");
    choosePicture(firstPicture);
    waitForWindow("New Profile");
    press("Escape");
    waitForWindow("Settings");
    EXPECT_EQ(avatarFiles(), 0);
    EXPECT_EQ(profiles().profiles().size(), 1u);
    press("Escape");
    waitUntil([&] { return activeWindow() == &window(); }, "main window");
}

TEST_F(SettingsJourneyTest, EditingCommandsActWhereTheCaretIs)
{
    launch();
    open(GoogleApp::keep);
    waitUntil([&] { return window().is_active(); }, "active window");
    auto& keep = view(GoogleApp::keep);
    auto const text = [&] { return evaluate(keep, "document.querySelector('textarea').value"); };
    auto const can
        = [&](char const* command) { return window().lookup_action(command)->property_enabled().get_value(); };
    evaluate(keep, "document.querySelector('textarea').focus()");
    type("torch");
    waitUntil([&] { return text() == "torch"; }, "text");

    auto const openAndCloseMenu = [&](std::function<bool()> const& isSoWhileOpen) {
        press("alt+e");
        waitUntil(isSoWhileOpen, "commands as the page can do them");
        press("Escape");
        waitUntil([&] { return window().get_focus()->gobj() == GTK_WIDGET(keep.engineView()); }, "focus in the page");
    };
    // Nothing is selected: there is nothing to cut.
    openAndCloseMenu([&] { return !can("cut") && can("undo"); });
    window().activate_action("win.select-all");
    openAndCloseMenu([&] { return can("cut"); });
    window().activate_action("win.cut");
    waitUntil([&] { return text().empty(); }, "cut text");
    window().activate_action("win.undo");
    waitUntil([&] { return text() == "torch"; }, "text again");

    press("ctrl+f");
    auto const field = [&] { return dynamic_cast<Gtk::Text*>(window().get_focus()); };
    waitUntil([&] { return field() != nullptr; }, "find field");
    type("red ");
    waitUntil([&] { return field() && field()->get_text().raw() == "red "; }, "typed text");
    window().activate_action("win.paste");
    waitUntil([&] { return field() && field()->get_text().raw() == "red torch"; }, "pasted text");
    window().activate_action("win.select-all");
    window().activate_action("win.cut");
    waitUntil([&] { return field() && field()->get_text().empty(); }, "empty field");
    EXPECT_EQ(text(), "torch");
}

TEST_F(SettingsJourneyTest, TheKeyOfADisabledCommandReachesThePage)
{
    launch();
    open(GoogleApp::keep);
    waitUntil([&] { return window().is_active(); }, "active window");
    auto& keep = view(GoogleApp::keep);
    evaluate(keep, "(window.keys = '', addEventListener('keydown', e => { keys += e.ctrlKey ? e.key : ''; }))");
    evaluate(keep, "document.querySelector('textarea').focus()");
    press("ctrl+2");
    waitUntil([&] { return controller().current() == GoogleApp::calendar; }, "enabled command");
    press("ctrl+5");
    waitUntil([&] { return controller().current() == GoogleApp::keep; }, "and back");
    // There is no way forward.
    press("ctrl+bracketright");
    waitUntil([&] { return evaluate(keep, "keys").ends_with("]"); }, "key in the page");
}

}
}
