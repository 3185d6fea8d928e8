#pragma once

#include "App/Appcast.h"
#include "Platform/Menu.h"
#include "Platform/Panels.h"
#include "Platform/Updater.h"
#include "Support/Lifetime.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace tarn {

// Looks for a newer release, and hands it to the system's installer once its signature is verified and the user agrees.
class UpdaterManager final : public platform::CommandReceiver {
public:
    // What the build says; empty in a build that does not update itself.
    struct Configuration {
        std::string feedURL {};
        // Ed25519, base64.
        std::string publicEDKey {};
        std::string currentVersion {};
        // From Installation::updatedBy().
        std::optional<std::string> updatedBy {};
    };
    enum class HostsTests { no, yes };

    UpdaterManager(Configuration, HostsTests, platform::Updater*, platform::Panels&);

    bool isConfigured() const;
    bool isActive() const { return m_isActive; }
    // Not while a check runs.
    bool canCheckForUpdates() const { return m_isActive && !m_isChecking; }
    // At the user's request: every outcome is said. An installation that somebody else updates says who, and asks
    // nobody.
    void checkForUpdates();
    // At nobody's request: only a newer release is said. Nothing where somebody else updates this installation, or
    // while a check runs.
    void checkInBackground();

    // Set by the owner: the answer of canCheckForUpdates() may have changed.
    std::function<void()> onChange;

    bool perform(platform::Command, int tag) override;
    std::optional<platform::CommandState> validate(platform::Command, int tag) const override;

private:
    // Who is told how it goes, until there is something to decide.
    enum class Voice { aloud, quiet };

    void begin(Voice);
    void feedArrived(platform::FetchResult);
    void offer(Appcast::Release);
    void download(Appcast::Release);
    void packageArrived(Appcast::Release const&, platform::FetchResult);
    void kept(Appcast::Release const&, std::optional<platform::PackageFile> const&);
    void say(std::string message, std::string details);
    void fail(std::string const& reason);
    void finish();
    template <typename T> Reply<T> whenDone(std::function<void(T)>);

    Configuration m_configuration;
    platform::Updater* m_updater;
    platform::Panels& m_panels;
    bool m_isActive;
    bool m_isChecking { false };
    Voice m_voice { Voice::aloud };
    std::unique_ptr<platform::ProgressPanel> m_progress;
    Lifetime m_lifetime;
};

}
