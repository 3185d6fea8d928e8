#pragma once

#include "MainWindow/JavaScriptDialogs.h"
#include "Platform/UIDelegate.h"
#include "Support/Log.h"

namespace tarn {

// What every page may ask the user, in the main window and in others: its dialogs and its file inputs.
class PageQuestions : public platform::UIDelegate {
public:
    // The panels outlive this.
    PageQuestions(platform::Panels& panels, Log log)
        : m_panels(panels)
        , m_questionLog(std::move(log))
        , m_dialogs(panels)
    {
    }

    void runJavaScriptAlert(platform::WebView&, std::string const& message, Reply<std::monostate>) override;
    void runJavaScriptConfirm(platform::WebView&, std::string const& message, Reply<bool>) override;
    void runJavaScriptTextInput(platform::WebView&, std::string const& prompt,
        std::optional<std::string> const& defaultText, Reply<std::optional<std::string>>) override;
    void runBeforeUnloadConfirm(platform::WebView&, Reply<bool>) override;
    void runOpenPanel(
        platform::WebView&, platform::OpenPanelParameters const&, Reply<std::vector<std::filesystem::path>>) override;
    void didFailToPrint(platform::WebView&, std::string const& reason) override;

protected:
    ~PageQuestions() = default;

    // To be called when the view shows another page or lost its page: nobody waits for the answers any more.
    void pageEnded(platform::WebView& view) { m_dialogs.pageEnded(view); }

private:
    platform::Panels& m_panels;
    Log m_questionLog;
    JavaScriptDialogs m_dialogs;
};

}
