#include "Web/ScriptPageTest.h"

namespace tarn::test {

ScriptPageTest::~ScriptPageTest() = default;

void ScriptPageTest::addScript(std::string source, platform::InjectionTime time, platform::InjectedFrames frames)
{
    content.userScripts.push_back({ .source = std::move(source), .injectionTime = time, .frames = frames });
}

gtk::WebView& ScriptPageTest::page()
{
    if (!m_page) {
        m_page = engine->makeWebView({ .dataStore = engine->dataStore(Uuid::random()),
            .userContentController = content,
            .javaScriptCanOpenWindowsAutomatically = true });
    }
    return static_cast<gtk::WebView&>(*m_page);
}

void ScriptPageTest::show(std::string const& html, std::string const& address)
{
    auto* const view = page().engineView();
    static int count = 0;
    auto const title = "page " + std::to_string(++count);
    auto const whole = "<!doctype html><title>" + title + "</title>" + html;
    webkit_web_view_load_html(view, whole.c_str(), address.c_str());
    waitUntil([&] { return page().title() == title && !webkit_web_view_is_loading(view); }, title);
}

}
