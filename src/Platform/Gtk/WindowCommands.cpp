#include "Platform/Gtk/WindowCommands.h"

namespace tarn::gtk {

MenuBarView::PlatformCommands windowCommands(
    Gtk::ApplicationWindow& window, EditingCommands& editing, WindowServices const& services)
{
    using platform::Command;
    MenuBarView::PlatformCommands commands {
        { Command::quit, { services.quit } },
        { Command::closeWindow, { [&window] { window.close(); } } },
        { Command::minimize, { [&window] { window.minimize(); } } },
        { Command::zoomWindow, { [&window] { window.is_maximized() ? window.unmaximize() : window.maximize(); } } },
        { Command::toggleFullScreen,
            { [&window] { window.is_fullscreen() ? window.unfullscreen() : window.fullscreen(); } } },
        { Command::checkSpellingWhileTyping,
            { [&spelling = services.spelling] { spelling.toggle(); },
                [&spelling = services.spelling] {
                    return platform::CommandState { .enabled = spelling.isAvailable(), .checked = spelling.isOn() };
                } } },
    };
    editing.addTo(commands);
    return commands;
}

}
