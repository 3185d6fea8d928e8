#pragma once

#include "Support/Reply.h"
#include "Support/Url.h"

#include <filesystem>
#include <optional>
#include <string>

namespace tarn::platform {

// The desktop around the application.
class Workspace {
public:
    virtual ~Workspace() = default;

    // Hands the URL to the registered handler of its scheme (the default browser for web addresses), never to a shell.
    // Returns at once; a URL without a handler is logged.
    virtual void open(Url const&) = 0;

    // Opens the file in the registered program of its type. A file that is itself a program is never run: it is shown
    // as reveal() does. Returns at once; a failure is logged.
    virtual void openFile(std::filesystem::path const&) = 0;

    // Shows the file, selected, in the file manager. Returns at once; a desktop without one is logged.
    virtual void reveal(std::filesystem::path const&) = 0;

    // Whether URLs of the scheme come to this application.
    virtual bool isDefaultHandler(std::string const& scheme) const = 0;

    // Makes this application the handler. The reply, on a later turn, is the reason why it is not, for users; nothing
    // when it is.
    virtual void setDefaultHandler(std::string const& scheme, Reply<std::optional<std::string>>) = 0;

    // Shows the desktop's settings for notifications, at the application's entry where it can. Returns at once; a
    // desktop without any is logged.
    virtual void openNotificationSettings() = 0;
};

}
