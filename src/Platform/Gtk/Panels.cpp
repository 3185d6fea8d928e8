#include "Platform/Gtk/Panels.h"

#include "Platform/Gtk/NativeWindow.h"
#include "Platform/Gtk/PlatformText.h"
#include "Platform/Gtk/Ref.h"
#include "Platform/Gtk/Signal.h"
#include "Platform/Gtk/WebView.h"
#include "Support/Cases.h"
#include "Support/ScopedConnection.h"

#include <adwaita.h>
#include <gtkmm/filechoosernative.h>

#include <algorithm>
#include <set>

namespace tarn::gtk {

namespace {

// Laying out more text than anybody reads would stop the interface.
constexpr glong longestText = 5'000;

std::string shortened(std::string const& text)
{
    auto* const valid = g_utf8_make_valid(text.data(), static_cast<gssize>(text.size()));
    std::string result(valid);
    if (g_utf8_strlen(valid, -1) > longestText) {
        result.resize(static_cast<std::size_t>(g_utf8_offset_to_pointer(valid, longestText) - valid));
        result += "…";
    }
    g_free(valid);
    return result;
}

// The titles with an underscore before the letter that chooses the button, no letter twice.
std::vector<std::string> withMnemonics(std::vector<platform::AlertButton> const& buttons)
{
    std::set<char> taken;
    std::vector<std::string> titles;
    for (auto const& button : buttons) {
        std::string title;
        bool marked = false;
        for (char const character : button.title) {
            if (!marked && g_ascii_isalpha(character) && taken.insert(g_ascii_tolower(character)).second) {
                title += '_';
                marked = true;
            } else if (character == '_') {
                title += '_';
            }
            title += character;
        }
        titles.push_back(std::move(title));
    }
    return titles;
}

// A modal window takes the input of its whole group, and windows without a group of their own share one.
void giveOwnGroup(Gtk::Window& window)
{
    if (gtk_window_has_group(window.gobj()))
        return;
    auto* const group = gtk_window_group_new();
    gtk_window_group_add_window(group, window.gobj());
    g_object_unref(group);
}

Gtk::Widget* widgetOf(platform::SheetParent parent)
{
    return std::visit(Cases {
                          [](std::monostate) -> Gtk::Widget* { return nullptr; },
                          [](platform::Window* window) -> Gtk::Widget* { return &nativeOf(*window); },
                          [](platform::WebView* view) -> Gtk::Widget* { return &gtk::widgetOf(*view); },
                      },
        parent);
}

// Not with gtkmm's list: that makes a wrapper for every window it passes, which stays when the window goes.
Gtk::Window* sheetOn(Gtk::Window& parent)
{
    auto* const windows = gtk_window_get_toplevels();
    for (guint index = 0; index < g_list_model_get_n_items(windows); ++index) {
        auto const window = adopt(static_cast<GtkWindow*>(g_list_model_get_item(windows, index)));
        if (gtk_window_get_transient_for(window.get()) == parent.gobj() && gtk_window_get_modal(window.get())
            && gtk_widget_get_mapped(GTK_WIDGET(window.get())))
            return Glib::wrap(window.get());
    }
    return nullptr;
}

}

Gtk::Window* sheetWindow(platform::SheetParent parent)
{
    auto* const widget = widgetOf(parent);
    auto* window = widget && widget->get_mapped() ? dynamic_cast<Gtk::Window*>(widget->get_root()) : nullptr;
    // A sheet on a sheet.
    while (auto* const sheet = window ? sheetOn(*window) : nullptr)
        window = sheet;
    return window;
}

void makeSheet(GtkWindow* dialog, Gtk::Window& parent)
{
    giveOwnGroup(parent);
    gtk_window_set_transient_for(dialog, parent.gobj());
    gtk_window_group_add_window(gtk_window_get_group(parent.gobj()), dialog);
    gtk_window_set_modal(dialog, TRUE);
    gtk_window_set_destroy_with_parent(dialog, TRUE);
}

class Panels::Dialog {
public:
    Dialog() = default;
    Dialog(Dialog const&) = delete;
    Dialog& operator=(Dialog const&) = delete;
    // Takes the dialog off the screen; a reply that was not given is dropped.
    virtual ~Dialog() = default;

    platform::SheetParent parent;
    ScopedConnection parentDestroyed;
};

class Panels::AlertDialog final : public Dialog {
public:
    AlertDialog(platform::Alert const& alert, std::string const& informativeText, Gtk::Window* sheetWindow,
        Reply<platform::AlertResponse> reply, std::function<void(Dialog&)> onEnd)
        : m_reply(std::move(reply))
        , m_onEnd(std::move(onEnd))
        , m_dialog(share(ADW_MESSAGE_DIALOG(
              adw_message_dialog_new(nullptr, shortened(alert.message).c_str(), shortened(informativeText).c_str()))))
        , m_onResponse(m_dialog.get(), "response", [this](char const* response) { respond(response); })
    {
        addButtons(alert.buttons);
        addExtras(alert);
        if (sheetWindow)
            makeSheet(GTK_WINDOW(m_dialog.get()), *sheetWindow);
        gtk_window_present(GTK_WINDOW(m_dialog.get()));
        // Not the check box, which would take Return for itself.
        auto* const first = m_entry ? m_entry : gtk_window_get_default_widget(GTK_WINDOW(m_dialog.get()));
        if (first)
            gtk_widget_grab_focus(first);
    }
    ~AlertDialog() override { gtk_window_destroy(GTK_WINDOW(m_dialog.get())); }

private:
    static std::string idOf(std::size_t button) { return "button-" + std::to_string(button); }

    void addButtons(std::vector<platform::AlertButton> const& buttons)
    {
        auto* const dialog = m_dialog.get();
        auto const titles = withMnemonics(buttons);
        adw_message_dialog_set_close_response(dialog, "");
        // The desktop puts the most important button last.
        for (auto index = buttons.size(); index-- > 0;) {
            auto const id = idOf(index);
            adw_message_dialog_add_response(dialog, id.c_str(), titles[index].c_str());
            if (buttons[index].role == platform::ButtonRole::cancel)
                adw_message_dialog_set_close_response(dialog, id.c_str());
            else if (buttons[index].role == platform::ButtonRole::destructive)
                adw_message_dialog_set_response_appearance(dialog, id.c_str(), ADW_RESPONSE_DESTRUCTIVE);
        }
        if (buttons.front().role == platform::ButtonRole::destructive)
            return;
        adw_message_dialog_set_default_response(dialog, idOf(0).c_str());
        if (buttons.size() > 1)
            adw_message_dialog_set_response_appearance(dialog, idOf(0).c_str(), ADW_RESPONSE_SUGGESTED);
    }

    void addExtras(platform::Alert const& alert)
    {
        auto* const box = gtk_box_new(GTK_ORIENTATION_VERTICAL, 12);
        if (alert.textField) {
            m_entry = gtk_entry_new();
            gtk_editable_set_text(GTK_EDITABLE(m_entry), alert.textField->c_str());
            gtk_entry_set_activates_default(GTK_ENTRY(m_entry), TRUE);
            gtk_widget_set_size_request(m_entry, 300, -1);
            gtk_accessible_update_property(
                GTK_ACCESSIBLE(m_entry), GTK_ACCESSIBLE_PROPERTY_LABEL, shortened(alert.message).c_str(), -1);
            gtk_box_append(GTK_BOX(box), m_entry);
        }
        if (alert.checkBox) {
            m_checkBox = gtk_check_button_new_with_label(alert.checkBox->c_str());
            gtk_box_append(GTK_BOX(box), m_checkBox);
        }
        if (m_entry || m_checkBox)
            adw_message_dialog_set_extra_child(m_dialog.get(), box);
        else
            g_object_unref(g_object_ref_sink(box));
    }

    void respond(std::string const& response)
    {
        platform::AlertResponse answer;
        if (response.starts_with("button-"))
            answer.button = std::stoul(response.substr(7));
        if (m_entry)
            answer.text = gtk_editable_get_text(GTK_EDITABLE(m_entry));
        if (m_checkBox)
            answer.checked = gtk_check_button_get_active(GTK_CHECK_BUTTON(m_checkBox));
        m_onEnd(*this);
        std::move(m_reply)(std::move(answer));
    }

    Reply<platform::AlertResponse> m_reply;
    std::function<void(Dialog&)> m_onEnd;
    Ref<AdwMessageDialog> m_dialog;
    GtkWidget* m_entry { nullptr };
    GtkWidget* m_checkBox { nullptr };
    Signal<void(char const*)> m_onResponse;
};

class Panels::FileDialog final : public Dialog {
public:
    FileDialog(Gtk::Window* sheetWindow, std::string const& title, Gtk::FileChooser::Action action)
        : m_dialog(Gtk::FileChooserNative::create(title, action))
    {
        if (!sheetWindow)
            return;
        giveOwnGroup(*sheetWindow);
        m_dialog->set_transient_for(*sheetWindow);
        m_dialog->set_modal();
    }

    Gtk::FileChooserNative& chooser() { return *m_dialog.get(); }

    template <typename Answer>
    void run(Reply<Answer> reply, std::function<void(Dialog&)> onEnd, std::function<Answer(Gtk::FileChooser&)> answer)
    {
        auto const shared = std::make_shared<Reply<Answer>>(std::move(reply));
        m_onResponse = m_dialog->signal_response().connect([this, shared, onEnd, answer](int response) {
            onEnd(*this);
            if (response == GTK_RESPONSE_ACCEPT)
                std::move (*shared)(answer(*m_dialog.get()));
            else
                std::move (*shared)(Answer {});
        });
        m_dialog->show();
    }

private:
    Glib::RefPtr<Gtk::FileChooserNative> m_dialog;
    ScopedConnection m_onResponse;
};

Panels::Panels() = default;

Panels::~Panels() = default;

Panels::Dialog& Panels::add(std::unique_ptr<Dialog> dialog, platform::SheetParent parent)
{
    auto& added = *m_dialogs.emplace_back(std::move(dialog));
    added.parent = parent;
    if (auto* const widget = widgetOf(parent))
        added.parentDestroyed = widget->signal_destroy().connect([this, parent] { dismiss(parent); });
    return added;
}

void Panels::end(Dialog& dialog)
{
    m_runLoop.post(m_lifetime.guard(
        [this, &dialog] { std::erase_if(m_dialogs, [&](auto const& one) { return one.get() == &dialog; }); }));
}

void Panels::dismiss(platform::SheetParent parent)
{
    // Taken out first: a dropped reply may come back here.
    std::list<std::unique_ptr<Dialog>> dismissed;
    for (auto next = m_dialogs.begin(); next != m_dialogs.end();) {
        auto const dialog = next++;
        if ((*dialog)->parent == parent)
            dismissed.splice(dismissed.end(), m_dialogs, dialog);
    }
}

void Panels::showAlert(platform::Alert const& alert, platform::SheetParent parent, Reply<platform::AlertResponse> reply)
{
    // What hangs on a page are the page's own words.
    auto const informativeText = std::holds_alternative<platform::WebView*>(parent)
        ? alert.informativeText
        : platformText(alert.informativeText);
    add(std::make_unique<AlertDialog>(
            alert, informativeText, sheetWindow(parent), std::move(reply), [this](Dialog& dialog) { end(dialog); }),
        parent);
}

void Panels::showOpenPanel(
    platform::OpenPanel const& panel, platform::SheetParent parent, Reply<std::vector<std::filesystem::path>> reply)
{
    using Action = Gtk::FileChooser::Action;
    auto const title = panel.message.empty() ? std::string("Open") : panel.message;
    auto dialog = std::make_unique<FileDialog>(
        sheetWindow(parent), title, panel.canChooseDirectories ? Action::SELECT_FOLDER : Action::OPEN);
    auto& chooser = dialog->chooser();
    chooser.set_select_multiple(panel.allowsMultipleSelection);
    if (panel.imagesOnly) {
        auto const images = Gtk::FileFilter::create();
        images->set_name("Images");
        images->add_pixbuf_formats();
        chooser.add_filter(images);
    }
    auto& added = static_cast<FileDialog&>(add(std::move(dialog), parent));
    added.run<std::vector<std::filesystem::path>>(
        std::move(reply), [this](Dialog& ended) { end(ended); },
        [](Gtk::FileChooser& answered) {
            std::vector<std::filesystem::path> files;
            // By hand: the list's own wrapper does not know what kind of files it holds.
            auto const chosen = adopt(gtk_file_chooser_get_files(answered.gobj()));
            for (guint index = 0; index < g_list_model_get_n_items(chosen.get()); ++index) {
                auto const file = adopt(static_cast<GFile*>(g_list_model_get_item(chosen.get(), index)));
                auto const* const name = g_file_peek_path(file.get());
                std::error_code error;
                // The dialog also takes names that were typed and do not exist.
                auto path = std::filesystem::canonical(name ? name : "", error);
                if (!error)
                    files.push_back(std::move(path));
            }
            return files;
        });
}

void Panels::showSavePanel(
    platform::SavePanel const& panel, platform::SheetParent parent, Reply<std::optional<std::filesystem::path>> reply)
{
    auto dialog = std::make_unique<FileDialog>(sheetWindow(parent), "Save", Gtk::FileChooser::Action::SAVE);
    auto& chooser = dialog->chooser();
    chooser.set_create_folders(true);
    chooser.set_current_name(panel.suggestedName);
    try {
        chooser.set_current_folder(Gio::File::create_for_path(panel.directory.string()));
    } catch (Glib::Error const&) {
        // The folder is gone: the dialog opens where it likes.
    }
    auto& added = static_cast<FileDialog&>(add(std::move(dialog), parent));
    added.run<std::optional<std::filesystem::path>>(
        std::move(reply), [this](Dialog& ended) { end(ended); },
        [](Gtk::FileChooser& answered) -> std::optional<std::filesystem::path> {
            auto const file = answered.get_file();
            if (!file || file->get_path().empty())
                return std::nullopt;
            return file->get_path();
        });
}

}
