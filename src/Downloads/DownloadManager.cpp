#include "Downloads/DownloadManager.h"

#include "Downloads/SafeFileName.h"
#include "Support/Ascii.h"

#include <algorithm>
#include <utility>

namespace tarn {

DownloadManager::DownloadManager(Environment environment)
    : m_environment(std::move(environment))
    , m_folder(m_environment.defaults, m_environment.userFolder)
    , m_dock(m_environment.dockTile)
{
    m_list.onCancel = [this](std::uint64_t id) { cancel(id); };
    m_list.onOpen = [this](std::filesystem::path const& file) { m_environment.workspace.openFile(file); };
    m_list.onReveal = [this](std::filesystem::path const& file) { m_environment.workspace.reveal(file); };
}

DownloadManager::~DownloadManager()
{
    for (auto const& [download, active] : m_active)
        active.download->setDelegate(nullptr);
    if (!m_active.empty())
        m_environment.log("[Downloads] cancelled what was still running: " + std::to_string(m_active.size()));
}

bool DownloadManager::shouldDownload(platform::NavigationResponse const& response)
{
    return !response.canShowMimeType
        || (response.contentDisposition && toAsciiLower(*response.contentDisposition).starts_with("attachment"));
}

void DownloadManager::adopt(std::shared_ptr<platform::Download> download, std::function<void()> const& closeEmptyPopup)
{
    auto& added = *download;
    m_active[&added] = {
        .download = std::move(download),
        .id = ++m_lastID,
    };
    added.setDelegate(this);
    if (closeEmptyPopup)
        closeEmptyPopup();
}

void DownloadManager::decideDestination(platform::Download& download, std::string const& suggestedFilename,
    Reply<std::optional<std::filesystem::path>> reply)
{
    auto const active = m_active.find(&download);
    if (active == m_active.end())
        return;
    m_questions.push_back({ active->second.id, safeFileName(suggestedFilename), std::move(reply) });
    askNext();
}

void DownloadManager::askNext()
{
    while (!m_isAsking && !m_questions.empty()) {
        auto const question = std::make_shared<Question>(std::move(m_questions.front()));
        m_questions.pop_front();
        if (findActive(question->id) == m_active.end())
            continue; // It has broken off while it waited.
        m_isAsking = true;
        auto answered = m_lifetime.guard([this, question](std::optional<std::filesystem::path> chosen) {
            m_isAsking = false;
            std::move(question->reply)(start(question->id, std::move(chosen)));
            askNext();
        });
        m_environment.panels.showSavePanel(
            {
                .suggestedName = question->name,
                .directory = m_folder.get(),
            },
            sheetWindow ? sheetWindow() : platform::SheetParent(), { std::move(answered), std::nullopt });
    }
}

std::optional<std::filesystem::path> DownloadManager::start(
    std::uint64_t id, std::optional<std::filesystem::path> chosen)
{
    auto const active = findActive(id);
    // It may have broken off while the panel was open.
    if (active == m_active.end())
        return std::nullopt;
    if (!chosen) {
        active->second.download->setDelegate(nullptr);
        m_active.erase(active);
        return std::nullopt;
    }
    m_folder.set(chosen->parent_path());
    active->second.destination = chosen;
    updateItem(active->second, DownloadItem::State::running);
    updateDock();
    return chosen;
}

void DownloadManager::progressDidChange(platform::Download& download)
{
    auto const active = m_active.find(&download);
    if (active == m_active.end() || !active->second.destination)
        return;
    updateItem(active->second, DownloadItem::State::running);
    updateDock();
}

void DownloadManager::didFinish(platform::Download& download)
{
    auto const finished = take(download);
    if (!finished || !finished->destination)
        return;
    updateItem(*finished, DownloadItem::State::finished);
    updateDock();
    if (onFinished)
        onFinished(*finished->destination);
}

void DownloadManager::didFail(platform::Download& download, std::string const& reason)
{
    auto const failed = take(download);
    if (!failed)
        return;
    m_list.remove(failed->id);
    updateDock();
    m_environment.log("[Downloads] failed: " + reason);
}

std::optional<DownloadManager::Active> DownloadManager::take(platform::Download const& download)
{
    auto node = m_active.extract(&download);
    if (node.empty())
        return std::nullopt;
    node.mapped().download->setDelegate(nullptr);
    return std::move(node.mapped());
}

DownloadManager::ActiveDownloads::iterator DownloadManager::findActive(std::uint64_t id)
{
    return std::ranges::find_if(m_active, [&](auto const& entry) { return entry.second.id == id; });
}

void DownloadManager::cancel(std::uint64_t id)
{
    auto const active = findActive(id);
    if (active == m_active.end())
        return;
    // Kept alive: it may fail in the call.
    auto const download = active->second.download;
    download->cancel();
}

void DownloadManager::updateItem(Active const& active, DownloadItem::State state)
{
    m_list.set({
        .id = active.id,
        .state = state,
        .file = *active.destination,
        .progress = active.download->progress(),
    });
}

void DownloadManager::updateDock()
{
    if (m_list.runningCount() == 0)
        m_dock.hide();
    else
        m_dock.show(m_list.fraction());
}

}
