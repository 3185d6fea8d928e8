#pragma once

#include "Support/Reply.h"

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace tarn::platform {

class WebView;
class Window;

// What a dialog hangs on, as a sheet: a window, or the window that shows a web view now. On nothing, on a hidden
// window or on a view that is not shown, it is modal to the application.
using SheetParent = std::variant<std::monostate, Window*, WebView*>;

enum class ButtonRole {
    normal,
    // What Escape and closing the dialog mean.
    cancel,
    // Does what cannot be undone.
    destructive,
};

struct AlertButton {
    std::string title;
    ButtonRole role { ButtonRole::normal };
};

// Plain text, UTF-8; of more than a few thousand characters the end is left out.
struct Alert {
    std::string message;
    std::string informativeText {};
    // In order of importance; the first is what Return means, unless it destroys. At least one.
    std::vector<AlertButton> buttons;
    // A text field with this content, which gets the focus.
    std::optional<std::string> textField {};
    // A check box of this title, off.
    std::optional<std::string> checkBox {};
};

struct AlertResponse {
    // Index of the button; nothing when the alert ended without one (Escape where no button cancels, the end of what it
    // hangs on).
    std::optional<std::size_t> button {};
    std::string text {};
    bool checked { false };
};

struct OpenPanel {
    std::string message {};
    bool allowsMultipleSelection { false };
    bool canChooseDirectories { false };
    bool imagesOnly { false };
};

struct SavePanel {
    // A bare name.
    std::string suggestedName;
    std::filesystem::path directory;
};

// The dialogs of the desktop. Nothing here waits: each reply is given once, on a later turn of the run loop.
class Panels {
public:
    virtual ~Panels() = default;

    virtual void showAlert(Alert const&, SheetParent, Reply<AlertResponse>) = 0;
    // The chosen files, links resolved, all of which exist; none when the user cancels.
    virtual void showOpenPanel(OpenPanel const&, SheetParent, Reply<std::vector<std::filesystem::path>>) = 0;
    // An absolute path. The user has agreed to replace a file that is there.
    virtual void showSavePanel(SavePanel const&, SheetParent, Reply<std::optional<std::filesystem::path>>) = 0;
    // Ends what hangs on the view or the window; the replies are dropped. The end of a view or window does so by
    // itself.
    virtual void dismiss(SheetParent) = 0;
};

}
