#include "MainWindow/MailPrint.h"

#include "MainWindow/PrintBridge.h"

namespace tarn {

namespace {

constexpr char const* clickPrintAll = "(() => {\n"
                                      "  const button = document.querySelector('[aria-label=\"Print all\"]');\n"
                                      "  if (button) { button.click(); return true; }\n"
                                      "  return false;\n"
                                      "})()";

}

void MailPrint::print(platform::WebView& view)
{
    view.evaluateJavaScript(
        clickPrintAll, m_lifetime.guard([this, weak = view.weak()](std::optional<std::string> const& result) {
            if (auto const asked = weak.lock(); asked && result != "true")
                explainMailPrint(*asked);
        }));
}

void MailPrint::explainMailPrint(platform::WebView& view)
{
    m_panels.showAlert(
        {
            .message = "Open an email to print it.",
            .informativeText = "Tarn prints the open conversation with Gmail's Print all button. If an email is open "
                               "and you still see this, click the printer icon above the message. Print This Page "
                               "prints the Gmail window as it looks now.",
            .buttons = { { .title = "OK" }, { .title = "Print This Page" } },
        },
        &view,
        { [weak = view.weak()](platform::AlertResponse const& response) {
             if (auto const asked = weak.lock(); asked && response.button == 1U)
                 PrintBridge::print(*asked);
         },
            {} });
}

}
