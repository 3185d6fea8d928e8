#pragma once

#include "Platform/Gtk/Ref.h"
#include "Support/TemporaryFolder.h"

#include <gio/gio.h>

#include <ostream>
#include <string>
#include <vector>

namespace tarn::test {

// A notification daemon as people have it, from its package. It ends with its scope.
class RealNotificationDaemon {
public:
    struct Kind {
        char const* name;
        std::vector<char const*> command;
        // Where a click on its popup means "open": in hundredths of the height from above, and pixels from the right.
        int clickHeight;
        int clickFromRight;

        friend void PrintTo(Kind const& kind, std::ostream* stream) { *stream << kind.name; }
    };
    static std::vector<Kind> const& kinds();

    explicit RealNotificationDaemon(Kind const&);
    ~RealNotificationDaemon();
    RealNotificationDaemon(RealNotificationDaemon const&) = delete;
    RealNotificationDaemon& operator=(RealNotificationDaemon const&) = delete;

    bool isRunning() const;
    // Whether a popup is on the screen.
    bool shows() const;
    // A real click on the popup.
    void click() const;

private:
    Kind const& m_kind;
    TemporaryFolder m_folder;
    gtk::Ref<GSubprocess> m_process;
};

}
