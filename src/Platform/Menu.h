#pragma once

#include <functional>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace tarn::platform {

// What a menu item or its key asks for. The receivers are asked in turn who takes it: the main window, the
// application, then the platform's own windows.
enum class Command {
    about,
    quit,
    closeWindow,
    showApp,
    goBack,
    goForward,
    reloadPage,
    zoomIn,
    zoomOut,
    actualSize,
    toggleFullScreen,
    minimize,
};

// With the platform's command key. An upper-case letter implies Shift.
struct KeyEquivalent {
    char32_t character { 0 };
    bool control { false };
    bool option { false };
};

struct MenuItem {
    std::string title;
    // A command goes to its receivers; a closure is run as it is.
    std::variant<Command, std::function<void()>> action;
    std::optional<KeyEquivalent> key {};
    int tag { 0 };
    // Never drawn; its key works all the same.
    bool hidden { false };
    // Only for closures: a command's check mark comes from its validation.
    bool checked { false };
    // Name of an icon, or the path of a picture file; empty for none.
    std::string icon {};
};

struct Separator { };

struct Menu;
using MenuEntry = std::variant<MenuItem, Separator, Menu>;

struct Menu {
    std::string title;
    std::vector<MenuEntry> entries;
};

struct CommandState {
    bool enabled { true };
    bool checked { false };
    bool hidden { false };

    friend bool operator==(CommandState const&, CommandState const&) = default;
};

// Carries out commands and says which can be carried out now.
class CommandReceiver {
public:
    // False when the command is not its own.
    virtual bool perform(Command, int tag) = 0;
    // Nothing when the command is not its own.
    virtual std::optional<CommandState> validate(Command, int tag) const = 0;

protected:
    ~CommandReceiver() = default;
};

}
