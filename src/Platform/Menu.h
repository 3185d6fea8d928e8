#pragma once

#include "Platform/Avatar.h"
#include "Support/Url.h"

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
    checkForUpdates,
    openSettings,
    setDefaultEmailApp,
    hide,
    hideOthers,
    showAll,
    quit,
    // Opens the item's represented URL.
    newItem,
    closeWindow,
    printPage,
    undo,
    redo,
    cut,
    copy,
    paste,
    selectAll,
    showFind,
    findNext,
    findPrevious,
    showSpelling,
    checkSpelling,
    checkSpellingWhileTyping,
    // Of the position that is the item's tag.
    showApp,
    goBack,
    goForward,
    reloadPage,
    zoomIn,
    zoomOut,
    actualSize,
    toggleFullScreen,
    minimize,
    zoomWindow,
};

// With the platform's command key. An upper-case letter implies Shift.
struct KeyEquivalent {
    char32_t character { 0 };
    bool control { false };
    bool option { false };
};

struct MenuItem {
    std::string title;
    // A command goes to its receivers, which know the item by its tag; a closure is run as it is.
    std::variant<Command, std::function<void()>> action;
    std::optional<KeyEquivalent> key {};
    int tag { 0 };
    // Never drawn; its key works all the same.
    bool hidden { false };
    // Only for closures: a command's check mark comes from its validation.
    bool checked { false };
    // Name of an icon; empty for none.
    std::string icon {};
    // Drawn in the place of an icon.
    std::optional<Avatar> avatar {};
    // What a command is to be done with.
    std::optional<Url> representedUrl {};
};

struct Separator { };

struct Menu;
using MenuEntry = std::variant<MenuItem, Separator, Menu>;

struct Menu {
    std::string title;
    std::vector<MenuEntry> entries;
    // Of a top-level menu: its entries, closures only, are replaced while the bar is in use.
    bool changes { false };
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
