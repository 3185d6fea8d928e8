#pragma once

#include "Platform/Download.h"
#include "Support/Lifetime.h"

namespace tarn::test {

// A download on paper: the test plays the engine.
class FakeDownload final : public platform::Download {
public:
    void setDelegate(platform::DownloadDelegate* newDelegate) override { delegate = newDelegate; }
    platform::DownloadProgress progress() const override { return now; }
    void cancel() override { fail("cancelled"); }

    // The answer, once it is given, is in `destination`; an inner nothing is "no".
    void ask(std::string const& name)
    {
        delegate->decideDestination(*this, name,
            { m_lifetime.guard([this](std::optional<std::filesystem::path> answer) { destination = answer; }),
                std::nullopt });
    }
    void receive(platform::DownloadProgress const& progress)
    {
        now = progress;
        if (delegate)
            delegate->progressDidChange(*this);
    }
    void finish() { delegate->didFinish(*this); }
    void fail(std::string const& reason) { delegate->didFail(*this, reason); }

    platform::DownloadDelegate* delegate { nullptr };
    platform::DownloadProgress now;
    std::optional<std::optional<std::filesystem::path>> destination;

private:
    Lifetime m_lifetime;
};

}
