#include "Platform/Gtk/PagePrinter.h"

#include "Platform/Gtk/Panels.h"

#include <glibmm/wrap.h>

#include <utility>

namespace tarn::gtk {

// One document on its way to the printer. It keeps itself until that is over, whatever becomes of the view.
class PagePrinter::Job {
public:
    Job(Ref<WebKitPrintOperation> operation, std::function<void(std::string const&)> onFailure)
        : m_operation(std::move(operation))
        , m_onFailure(std::move(onFailure))
        , m_onFailed(m_operation.get(), "failed",
              [this](GError* error) {
                  if (m_onFailure)
                      m_onFailure(error->message);
              })
        , m_onFinished(m_operation.get(), "finished", [this] { RunLoop().post([held = std::move(m_self)] {}); })
    {
    }

    static void start(std::shared_ptr<Job> const& job)
    {
        job->m_self = job;
        webkit_print_operation_print(job->m_operation.get());
    }
    // Nobody is left to be told.
    void forget() { m_onFailure = nullptr; }

private:
    Ref<WebKitPrintOperation> m_operation;
    std::function<void(std::string const&)> m_onFailure;
    std::shared_ptr<Job> m_self;
    Signal<void(GError*)> m_onFailed;
    Signal<void()> m_onFinished;
};

PagePrinter::PagePrinter(WebKitWebView* view)
    : m_view(view)
    , m_onPrint(view, "print", [this](WebKitPrintOperation* operation) -> gboolean {
        openDialog(share(operation));
        return TRUE;
    })
{
}

PagePrinter::~PagePrinter()
{
    closeDialog();
    if (m_job)
        m_job->forget();
}

void PagePrinter::print()
{
    if (!m_dialog)
        openDialog(adopt(webkit_print_operation_new(m_view)));
}

void PagePrinter::openDialog(Ref<WebKitPrintOperation> operation)
{
    if (m_dialog)
        return;
    m_asked = std::move(operation);
    m_dialog = share(GTK_PRINT_UNIX_DIALOG(gtk_print_unix_dialog_new("Print", nullptr)));
    auto* const dialog = m_dialog.get();
    // What the engine does by itself, for printers that do not.
    gtk_print_unix_dialog_set_manual_capabilities(dialog,
        GtkPrintCapabilities(GTK_PRINT_CAPABILITY_PAGE_SET | GTK_PRINT_CAPABILITY_COPIES | GTK_PRINT_CAPABILITY_COLLATE
            | GTK_PRINT_CAPABILITY_REVERSE | GTK_PRINT_CAPABILITY_SCALE | GTK_PRINT_CAPABILITY_GENERATE_PDF));
    gtk_print_unix_dialog_set_embed_page_setup(dialog, TRUE);
    auto* const widget = GTK_WIDGET(m_view);
    if (auto* const root = gtk_widget_get_mapped(widget) ? gtk_widget_get_root(widget) : nullptr; GTK_IS_WINDOW(root))
        makeSheet(GTK_WINDOW(dialog), *Glib::wrap(GTK_WINDOW(root)));
    m_onResponse = std::make_unique<Signal<void(int)>>(dialog, "response", [this](int response) { respond(response); });
    gtk_window_present(GTK_WINDOW(dialog));
}

void PagePrinter::respond(int response)
{
    if (response == GTK_RESPONSE_OK) {
        auto const settings = adopt(gtk_print_unix_dialog_get_settings(m_dialog.get()));
        if (auto* const printer = gtk_print_unix_dialog_get_selected_printer(m_dialog.get()))
            gtk_print_settings_set_printer(settings.get(), gtk_printer_get_name(printer));
        webkit_print_operation_set_print_settings(m_asked.get(), settings.get());
        webkit_print_operation_set_page_setup(m_asked.get(), gtk_print_unix_dialog_get_page_setup(m_dialog.get()));
        m_job = std::make_shared<Job>(m_asked, onFailure);
        Job::start(m_job);
    }
    // A later turn: the dialog is still telling.
    gtk_widget_set_visible(GTK_WIDGET(m_dialog.get()), FALSE);
    m_runLoop.post([dialog = std::exchange(m_dialog, {}), connection = std::shared_ptr(std::move(m_onResponse))] {
        gtk_window_destroy(GTK_WINDOW(dialog.get()));
    });
    m_asked = {};
}

void PagePrinter::closeDialog()
{
    m_onResponse.reset();
    if (m_dialog)
        gtk_window_destroy(GTK_WINDOW(std::exchange(m_dialog, {}).get()));
    m_asked = {};
}

}
