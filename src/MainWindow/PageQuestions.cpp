#include "MainWindow/PageQuestions.h"

#include "MainWindow/FilePicker.h"

namespace tarn {

void PageQuestions::runJavaScriptAlert(platform::WebView& view, std::string const& message, Reply<std::monostate> reply)
{
    m_dialogs.alert(message, view, std::move(reply));
}

void PageQuestions::runJavaScriptConfirm(platform::WebView& view, std::string const& message, Reply<bool> reply)
{
    m_dialogs.confirm(message, view, std::move(reply));
}

void PageQuestions::runJavaScriptTextInput(platform::WebView& view, std::string const& prompt,
    std::optional<std::string> const& defaultText, Reply<std::optional<std::string>> reply)
{
    m_dialogs.prompt(prompt, defaultText, view, std::move(reply));
}

void PageQuestions::runBeforeUnloadConfirm(platform::WebView& view, Reply<bool> reply)
{
    m_dialogs.confirmLeaving(view, std::move(reply));
}

void PageQuestions::runOpenPanel(platform::WebView& view, platform::OpenPanelParameters const& parameters,
    Reply<std::vector<std::filesystem::path>> reply)
{
    FilePicker::choose(m_panels, parameters, view, std::move(reply));
}

void PageQuestions::didFailToPrint(platform::WebView& view, std::string const& reason)
{
    m_questionLog("[Print] failed: " + reason);
    m_panels.showAlert(
        { .message = "The page could not be printed.", .informativeText = reason, .buttons = { { .title = "OK" } } },
        &view, { [](platform::AlertResponse const&) {}, {} });
}

}
