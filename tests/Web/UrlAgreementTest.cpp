#include "Fakes/HostileUrls.h"
#include "Web/WebTest.h"

#include <nlohmann/json.hpp>

namespace tarn {
namespace {

class UrlAgreementTest : public test::WebTest { };

// What a decision takes a URL for must be what the engine then loads.
TEST_F(UrlAgreementTest, HostsAreThoseOfTheEngine)
{
    launch();
    open(GoogleApp::keep);
    nlohmann::json inputs = nlohmann::json::array();
    for (auto const input : tests::hostileUrls)
        inputs.push_back(std::string(input));
    auto const text = inputs.dump(-1, ' ', true, nlohmann::json::error_handler_t::replace);
    auto const answers = nlohmann::json::parse(evaluate(view(GoogleApp::keep),
        "JSON.stringify(" + text
            + ".map(x => { try { const u = new URL(x); return [u.hostname, u.href]; } catch (e) { return null; } }))"));

    ASSERT_EQ(answers.size(), inputs.size());
    for (std::size_t i = 0; i < inputs.size(); ++i) {
        auto const url = Url::parse(inputs[i].get<std::string>());
        SCOPED_TRACE(inputs[i].dump());
        ASSERT_EQ(url.has_value(), !answers[i].is_null()) << answers[i];
        if (!url)
            continue;
        EXPECT_EQ(url->host(), answers[i][0].get<std::string>());
        EXPECT_EQ(url->string(), answers[i][1].get<std::string>());
    }
}

}
}
