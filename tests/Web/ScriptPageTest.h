#pragma once

#include "Web/WebTest.h"

#include <string>

namespace tarn::test {

// One view with scripts of the test's choice, and pages written by the test.
class ScriptPageTest : public WebTest {
protected:
    ScriptPageTest() { startEngine(sandbox); }
    ~ScriptPageTest() override;

    void addScript(std::string source, platform::InjectionTime time = platform::InjectionTime::documentStart,
        platform::InjectedFrames frames = platform::InjectedFrames::allFrames);
    // Made with what has been added so far.
    gtk::WebView& page();
    // Replaces the page by this one, of that address, and waits until it has loaded.
    void show(std::string const& html, std::string const& address = "https://mail.google.com/");
    std::string run(std::string const& expression) { return evaluate(page(), expression); }

    platform::UserContentController content;

private:
    std::unique_ptr<platform::WebView> m_page;
};

}
