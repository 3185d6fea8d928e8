#include "Fakes/FakeWebView.h"

#include "Contract/WebViewContract.h"

namespace tarn::test {

struct FakeHarness {
    platform::WebView& view() { return fake; }
    void settle(std::function<bool()> const&) { fake.arrive(); }
    void crash() { fake.terminate(); }
    static Url page(int number) { return *Url::parse("https://keep.google.com/" + std::to_string(number)); }

    FakeWebView fake;
};

INSTANTIATE_TYPED_TEST_SUITE_P(Fake, WebViewContract, FakeHarness);

}
