#include "Platform/Gtk/PageFind.h"

#include <utility>

namespace tarn::gtk {

namespace {

guint engineOptions(platform::FindOptions const& options)
{
    guint result = WEBKIT_FIND_OPTIONS_NONE;
    if (!options.matchCase)
        result |= WEBKIT_FIND_OPTIONS_CASE_INSENSITIVE;
    if (options.wraps)
        result |= WEBKIT_FIND_OPTIONS_WRAP_AROUND;
    return result;
}

}

PageFind::PageFind(WebKitWebView* view)
    : m_view(view)
    , m_controller(webkit_web_view_get_find_controller(view))
    , m_onFound(m_controller, "found-text", [this](guint) { answer(true); })
    , m_onFailed(m_controller, "failed-to-find-text", [this] { answer(false); })
{
}

void PageFind::find(std::string const& text, platform::FindOptions const& options, std::function<void(bool)> completion)
{
    // Typing can outrun a long page: of the texts that still wait only the last one matters.
    if (m_searches.size() > 1 && m_searches.back().text != text) {
        auto& waiting = m_searches.back();
        waiting.text = text;
        waiting.options = options;
        waiting.completions.push_back(std::move(completion));
        return;
    }
    m_searches.push_back({ text, options, {} });
    m_searches.back().completions.push_back(std::move(completion));
    if (m_searches.size() == 1)
        start();
}

void PageFind::start()
{
    auto const& search = m_searches.front();
    auto const options = engineOptions(search.options);
    bool const backward = search.options.direction == platform::FindDirection::backward;
    if (search.text == m_markedText && options == m_markedOptions) {
        if (backward)
            webkit_find_controller_search_previous(m_controller);
        else
            webkit_find_controller_search_next(m_controller);
        return;
    }
    if (!m_markedText.empty()) {
        // The engine goes on after what it marked, but who types on means that place. A world of its own: the page may
        // have put something else in the function's place.
        webkit_web_view_evaluate_javascript(
            m_view, "getSelection()?.collapseToStart?.()", -1, "tarn-find", nullptr, nullptr, nullptr, nullptr);
    }
    m_markedText = search.text;
    m_markedOptions = options;
    webkit_find_controller_search(
        m_controller, search.text.c_str(), backward ? options | WEBKIT_FIND_OPTIONS_BACKWARDS : options, G_MAXUINT);
}

void PageFind::answer(bool found)
{
    if (m_searches.empty())
        return;
    auto const search = std::move(m_searches.front());
    m_searches.pop_front();
    if (!m_searches.empty())
        start();
    for (auto const& completion : search.completions)
        completion(found);
}

void PageFind::end()
{
    m_markedText.clear();
    webkit_find_controller_search_finish(m_controller);
}

void PageFind::pageEnded()
{
    m_markedText.clear();
    for (auto const& search : std::exchange(m_searches, {})) {
        for (auto const& completion : search.completions)
            completion(false);
    }
}

}
