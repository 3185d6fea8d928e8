#pragma once

#include "Platform/Gtk/HttpsFetch.h"
#include "Support/Lifetime.h"
#include "Support/Log.h"

#include <chrono>
#include <filesystem>
#include <functional>

namespace tarn::gtk {

class Updater final : public platform::Updater {
public:
    struct Options {
        // Made when it is needed; what an earlier update left in it is replaced.
        std::filesystem::path folder;
        // For one file, from beginning to end.
        std::chrono::milliseconds timeLimit { std::chrono::minutes(15) };
        // Before the first request.
        std::function<void(SoupSession*)> sessionSetUp {};
    };

    Updater(Options, Log);
    ~Updater() override;

    void fetch(
        Url const&, std::size_t limit, std::function<void(double)> progress, Reply<platform::FetchResult>) override;
    void cancelFetch() override;
    std::unique_ptr<platform::ProgressPanel> showProgress(
        std::string const& text, std::function<void()> onCancel) override;
    void keep(std::string content, Reply<std::optional<platform::PackageFile>>) override;
    void install(platform::PackageFile const&, Reply<std::optional<std::string>>) override;

private:
    void ask(std::filesystem::path const&, Reply<std::optional<platform::PackageFile>>);

    Options m_options;
    Log m_log;
    Ref<SoupSession> m_session;
    std::unique_ptr<HttpsFetch> m_fetch;
    Lifetime m_lifetime;
};

}
