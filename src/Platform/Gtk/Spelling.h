#pragma once

#include "Platform/Gtk/Ref.h"
#include "Platform/Gtk/RunLoop.h"

#include <webkit/webkit.h>

namespace tarn::gtk {

// The spell checker of all pages, in the languages of the user's locale; on by itself where there is a dictionary.
class Spelling {
public:
    // The dictionaries are read a moment later: the first page does not wait for them.
    explicit Spelling(WebKitWebContext*);

    // False without a dictionary for the user's languages; true until that is known.
    bool isAvailable() const;
    bool isOn() const;
    void toggle();

private:
    void start();

    Ref<WebKitWebContext> m_context;
    RunLoop m_runLoop;
    std::unique_ptr<platform::Timer> m_start;
};

}
