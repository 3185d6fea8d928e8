#include "MainWindow/FindBarController.h"

namespace tarn {

void FindBarController::show()
{
    m_visible = true;
    changed();
    if (onFocusField)
        onFocusField();
}

void FindBarController::hide()
{
    m_visible = false;
    ++m_hidings;
    m_status.clear();
    changed();
    if (auto const view = m_webView.lock()) {
        view->endFind();
        if (onFocusPage)
            onFocusPage(*view);
    }
}

void FindBarController::find(platform::FindDirection direction)
{
    auto const view = m_webView.lock();
    if (!view || m_text.empty())
        return;
    view->find(m_text, { .direction = direction, .matchCase = false, .wraps = true },
        m_lifetime.guard([this, asked = m_webView, hidings = m_hidings](bool found) {
            if (hidings != m_hidings || asked.lock() != m_webView.lock())
                return;
            m_status = found ? "" : notFound;
            changed();
        }));
}

void FindBarController::setText(std::string text)
{
    if (text == m_text)
        return;
    m_text = std::move(text);
    find(platform::FindDirection::forward);
}

void FindBarController::changed()
{
    if (onChange)
        onChange();
}

}
