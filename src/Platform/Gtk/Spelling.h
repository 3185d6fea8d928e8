#pragma once

#include "Platform/Gtk/Ref.h"

#include <webkit/webkit.h>

namespace tarn::gtk {

// The spell checker of all pages, in the languages of the user's locale; on from the start where there is a dictionary.
class Spelling {
public:
    explicit Spelling(WebKitWebContext*);

    // False without a dictionary for the user's languages.
    bool isAvailable() const;
    bool isOn() const;
    void toggle();

private:
    Ref<WebKitWebContext> m_context;
};

}
