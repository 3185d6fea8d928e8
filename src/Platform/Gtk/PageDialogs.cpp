#include "Platform/Gtk/PageDialogs.h"

#include "Platform/Gtk/Ref.h"
#include "Platform/Gtk/RunLoop.h"
#include "Platform/WebView.h"

#include <algorithm>
#include <memory>

namespace tarn::gtk {

namespace {

// A dialog that the page waits in. Its script goes on after the last holder has let go: on a later turn, as the engine
// still needs a dialog that is answered while it announces it.
std::shared_ptr<WebKitScriptDialog> hold(WebKitScriptDialog* dialog)
{
    return { webkit_script_dialog_ref(dialog), [](WebKitScriptDialog* held) {
                RunLoop().post([held] {
                    webkit_script_dialog_close(held);
                    webkit_script_dialog_unref(held);
                });
            } };
}

std::string textOf(char const* text)
{
    return text ? text : "";
}

}

PageDialogs::PageDialogs(platform::WebView& view, WebKitWebView* engineView)
    : m_view(view)
    , m_onScriptDialog(engineView, "script-dialog", [this](auto* dialog) { return runScriptDialog(dialog); })
    , m_onFileChooser(engineView, "run-file-chooser", [this](auto* request) { return runFileChooser(request); })
{
}

gboolean PageDialogs::runScriptDialog(WebKitScriptDialog* dialog)
{
    auto const held = hold(dialog);
    if (!m_delegate)
        return TRUE;
    auto const message = textOf(webkit_script_dialog_get_message(dialog));
    switch (webkit_script_dialog_get_dialog_type(dialog)) {
    case WEBKIT_SCRIPT_DIALOG_ALERT:
        m_delegate->runJavaScriptAlert(m_view, message, { [held](std::monostate) {}, {} });
        break;
    case WEBKIT_SCRIPT_DIALOG_CONFIRM:
        m_delegate->runJavaScriptConfirm(m_view, message,
            { [held](bool answer) { webkit_script_dialog_confirm_set_confirmed(held.get(), answer); }, false });
        break;
    case WEBKIT_SCRIPT_DIALOG_PROMPT: {
        auto const* const defaultText = webkit_script_dialog_prompt_get_default_text(dialog);
        m_delegate->runJavaScriptTextInput(m_view, message,
            defaultText ? std::optional<std::string>(defaultText) : std::nullopt,
            { [held](std::optional<std::string> const& answer) {
                 if (answer)
                     webkit_script_dialog_prompt_set_text(held.get(), answer->c_str());
             },
                std::nullopt });
        break;
    }
    case WEBKIT_SCRIPT_DIALOG_BEFORE_UNLOAD_CONFIRM: {
        onAskToLeave();
        m_delegate->runBeforeUnloadConfirm(m_view,
            { [held, decided = m_lifetime.guard([this](bool leaves) { onLeaveDecided(leaves); })](bool leaves) mutable {
                 webkit_script_dialog_confirm_set_confirmed(held.get(), leaves);
                 decided(leaves);
             },
                false });
        break;
    }
    }
    return TRUE;
}

gboolean PageDialogs::runFileChooser(WebKitFileChooserRequest* request)
{
    if (!m_delegate)
        return TRUE;
    // The engine has no word yet for inputs that take directories.
    platform::OpenPanelParameters const parameters {
        .allowsMultipleSelection = webkit_file_chooser_request_get_select_multiple(request) != FALSE,
        .allowsDirectories = false,
    };
    m_delegate->runOpenPanel(m_view, parameters,
        { [held = share(request)](std::vector<std::filesystem::path> const& files) {
             if (files.empty()) {
                 webkit_file_chooser_request_cancel(held.get());
                 return;
             }
             std::vector<char const*> names(files.size() + 1);
             std::ranges::transform(files, names.begin(), [](auto const& file) { return file.c_str(); });
             webkit_file_chooser_request_select_files(held.get(), names.data());
         },
            {} });
    return TRUE;
}

}
