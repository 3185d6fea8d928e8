#pragma once

#include "Platform/Gtk/Ref.h"
#include "Platform/Gtk/RunLoop.h"
#include "Platform/Gtk/Signal.h"

#include <gtk/gtkunixprint.h>
#include <webkit/webkit.h>

#include <functional>
#include <memory>
#include <string>

namespace tarn::gtk {

// Prints the pages of one view, and frames that ask for it. The dialog is a sheet on the view's window; the engine's
// own would run a main loop of its own.
class PagePrinter {
public:
    explicit PagePrinter(WebKitWebView*);
    ~PagePrinter();

    // Nothing while the dialog is open.
    void print();

    // The reason, as the platform says it.
    std::function<void(std::string const&)> onFailure;

private:
    class Job;

    void openDialog(Ref<WebKitPrintOperation>);
    void respond(int response);
    void closeDialog();

    WebKitWebView* m_view;
    Ref<WebKitPrintOperation> m_asked;
    Ref<GtkPrintUnixDialog> m_dialog;
    std::shared_ptr<Job> m_job;
    Signal<gboolean(WebKitPrintOperation*)> m_onPrint;
    std::unique_ptr<Signal<void(int)>> m_onResponse;
    RunLoop m_runLoop;
};

}
