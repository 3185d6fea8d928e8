#pragma once

#include "Platform/Panels.h"
#include "Platform/WebView.h"
#include "Support/Lifetime.h"

namespace tarn {

// Prints the conversation that is open in Gmail, with the page's own button; the window itself is no good on paper.
class MailPrint {
public:
    // The panels outlive this.
    explicit MailPrint(platform::Panels& panels)
        : m_panels(panels)
    {
    }

    void print(platform::WebView&);

private:
    void explainMailPrint(platform::WebView&);

    platform::Panels& m_panels;
    Lifetime m_lifetime;
};

}
