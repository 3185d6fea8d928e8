#include "App/UpdaterManager.h"

#include "Support/Signature.h"

#include <stdexcept>
#include <utility>

namespace tarn {

using platform::AlertResponse;
using platform::Command;
using platform::CommandState;
using platform::FetchResult;
using platform::PackageFile;

namespace {

constexpr std::size_t largestFeed = 1024UL * 1024;
// The signature covers the whole file, which is held in memory until it is verified.
constexpr std::size_t largestPackage = 128UL * 1024 * 1024;

}

UpdaterManager::UpdaterManager(
    Configuration configuration, HostsTests hostsTests, platform::Updater* updater, platform::Panels& panels)
    : m_configuration(std::move(configuration))
    , m_updater(updater)
    , m_panels(panels)
    , m_isActive(isConfigured() && updater && hostsTests == HostsTests::no)
{
}

bool UpdaterManager::isConfigured() const
{
    return !m_configuration.feedURL.empty() && !m_configuration.publicEDKey.empty();
}

template <typename T> Reply<T> UpdaterManager::whenDone(std::function<void(T)> then)
{
    return Reply<T>(m_lifetime.guard(std::move(then)), T {});
}

void UpdaterManager::checkForUpdates()
{
    if (canCheckForUpdates())
        begin(Voice::aloud);
}

void UpdaterManager::checkInBackground()
{
    if (canCheckForUpdates() && !m_configuration.updatedBy)
        begin(Voice::quiet);
}

void UpdaterManager::begin(Voice voice)
{
    m_isChecking = true;
    m_voice = voice;
    if (onChange)
        onChange();
    if (m_configuration.updatedBy) {
        say("Tarn does not update itself here", "This copy of Tarn is updated by " + *m_configuration.updatedBy + ".");
        finish();
        return;
    }
    auto const feed = Url::parse(m_configuration.feedURL);
    if (!feed || feed->scheme() != "https") {
        fail("The address of the list of releases is not secure.");
        return;
    }
    if (m_voice == Voice::aloud)
        m_progress = m_updater->showProgress("Checking for updates…", [this] { m_updater->cancelFetch(); });
    m_updater->fetch(
        *feed, largestFeed, {}, whenDone<FetchResult>([this](FetchResult result) { feedArrived(std::move(result)); }));
}

void UpdaterManager::feedArrived(FetchResult result)
{
    m_progress.reset();
    if (!result.content) {
        fail(result.problem);
        return;
    }
    try {
        auto release = Appcast::newest(*result.content);
        auto const current = Version::parse(m_configuration.currentVersion);
        if (release && current && *current < release->version) {
            offer(*std::move(release));
            return;
        }
        if (m_voice == Voice::aloud)
            say("Tarn is up to date", "Version " + m_configuration.currentVersion + " is the newest version.");
        finish();
    } catch (std::runtime_error const& error) {
        fail(std::string("There is a problem with what the server sent: ") + error.what() + ".");
    }
}

void UpdaterManager::offer(Appcast::Release release)
{
    // From here on it is the user's.
    m_voice = Voice::aloud;
    auto const text = "Version " + release.title + " is available; you have version " + m_configuration.currentVersion
        + "." + (release.notes.empty() ? "" : "\n\n" + release.notes);
    m_panels.showAlert(
        {
            .message = "A new version of Tarn is available",
            .informativeText = text,
            .buttons = { { .title = "Install Update" }, { .title = "Later", .role = platform::ButtonRole::cancel } },
        },
        {}, whenDone<AlertResponse>([this, release = std::move(release)](AlertResponse const& response) {
            if (response.button == 0)
                download(release);
            else
                finish();
        }));
}

void UpdaterManager::download(Appcast::Release release)
{
    if (release.length > largestPackage) {
        fail("The update is larger than any release of Tarn can be.");
        return;
    }
    m_progress
        = m_updater->showProgress("Downloading version " + release.title + "…", [this] { m_updater->cancelFetch(); });
    auto const progress = [this](double fraction) {
        if (m_progress)
            m_progress->setFraction(fraction);
    };
    auto const url = release.package;
    auto const length = static_cast<std::size_t>(release.length);
    m_updater->fetch(url, length, m_lifetime.guard(progress),
        whenDone<FetchResult>(
            [this, release = std::move(release)](FetchResult result) { packageArrived(release, std::move(result)); }));
}

void UpdaterManager::packageArrived(Appcast::Release const& release, FetchResult result)
{
    if (!result.content) {
        fail(result.problem);
        return;
    }
    if (result.content->size() != release.length) {
        fail("The update is incomplete.");
        return;
    }
    if (!isSigned(*result.content, release.signature, m_configuration.publicEDKey)) {
        fail("The update is not signed by the makers of Tarn. It was thrown away.");
        return;
    }
    m_updater->keep(*std::move(result.content),
        whenDone<std::optional<PackageFile>>(
            [this, release](std::optional<PackageFile> const& package) { kept(release, package); }));
}

// The feed is not signed: an old package, signed long ago, may be passed off as new. So the package's own word counts.
void UpdaterManager::kept(Appcast::Release const& release, std::optional<PackageFile> const& package)
{
    m_progress.reset();
    auto const version = package ? Version::parse(package->version) : std::nullopt;
    if (!package || package->name != "tarn" || version != release.version) {
        fail("The update is not the version that was announced.");
        return;
    }
    m_updater->install(*package,
        whenDone<std::optional<std::string>>(
            [this, path = package->path.string()](std::optional<std::string> const& problem) {
                if (problem)
                    say("The update is ready, but could not be opened",
                        *problem + "\n\nIt is verified and lies here: " + path);
                finish();
            }));
}

void UpdaterManager::say(std::string message, std::string details)
{
    m_panels.showAlert(
        {
            .message = std::move(message),
            .informativeText = std::move(details),
            .buttons = { { .title = "OK", .role = platform::ButtonRole::cancel } },
        },
        {}, whenDone<AlertResponse>([](AlertResponse const&) {}));
}

void UpdaterManager::fail(std::string const& reason)
{
    // Without a reason the user ended it.
    if (!reason.empty() && m_voice == Voice::aloud)
        say("Tarn could not be updated", reason);
    finish();
}

void UpdaterManager::finish()
{
    m_progress.reset();
    m_isChecking = false;
    if (onChange)
        onChange();
}

bool UpdaterManager::perform(Command command, int)
{
    if (command != Command::checkForUpdates)
        return false;
    checkForUpdates();
    return true;
}

std::optional<CommandState> UpdaterManager::validate(Command command, int) const
{
    if (command != Command::checkForUpdates)
        return std::nullopt;
    return CommandState { .enabled = canCheckForUpdates() };
}

}
