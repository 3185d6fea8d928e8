#include "Platform/Gtk/Download.h"

#include "Platform/Gtk/BackgroundTask.h"
#include "Support/Unicode.h"
#include "Support/Uuid.h"

#include <limits>
#include <system_error>

namespace tarn::gtk {

namespace {

constexpr std::chrono::milliseconds progressInterval { 100 };

// The engine takes the name at once, and writes to another file beside it.
constexpr char const* engineSuffix = ".wkdownload";

std::filesystem::path partialFileBeside(std::filesystem::path const& destination)
{
    return destination.parent_path() / (".tarn-" + Uuid::random().string() + ".part");
}

}

Download::Download(WebKitDownload* download)
    : m_download(share(download))
    , m_onDecideDestination(download, "decide-destination",
          [this](char const* suggestedFilename) { return decideDestination(suggestedFilename); })
    , m_onData(download, "received-data", [this](guint64) { dataReceived(); })
    , m_onFailed(download, "failed", [this](GError* error) { end(error->message); })
    // It comes after a failure, too.
    , m_onFinished(download, "finished",
          [this] {
              m_networkProcess.reset();
              if (!m_ended)
                  takePlace();
          })
    , m_networkProcess(std::in_place, [this] { networkProcessEnded(); })
{
}

Download::~Download()
{
    if (!std::exchange(m_ended, true))
        webkit_download_cancel(m_download.get());
}

platform::DownloadProgress Download::progress() const
{
    auto* const response = webkit_download_get_response(m_download.get());
    auto const length = response ? webkit_uri_response_get_content_length(response) : 0;
    bool const known = length > 0 && length <= std::numeric_limits<std::int64_t>::max();
    return {
        .completed = static_cast<std::int64_t>(webkit_download_get_received_data_length(m_download.get())),
        .total = known ? static_cast<std::int64_t>(length) : -1,
    };
}

gboolean Download::decideDestination(char const* suggestedFilename)
{
    if (!m_delegate) {
        webkit_download_cancel(m_download.get());
        return TRUE;
    }
    m_delegate->decideDestination(*this, suggestedFilename ? suggestedFilename : "",
        { m_lifetime.guard([this](std::optional<std::filesystem::path> destination) { write(destination); }),
            std::nullopt });
    return TRUE;
}

void Download::write(std::optional<std::filesystem::path> const& destination)
{
    if (m_ended)
        return;
    if (!destination) {
        m_ended = true;
        webkit_download_cancel(m_download.get());
        return;
    }
    m_destination = *destination;
    m_partial = partialFileBeside(m_destination);
    // The engine waits for ever for a path that it cannot read.
    if (m_partial.is_absolute() && isUtf8(m_partial.string()))
        webkit_download_set_destination(m_download.get(), m_partial.c_str());
    else
        m_runLoop.post(m_lifetime.guard([this] {
            if (m_ended)
                return;
            auto const download = m_download;
            end("the name of the folder cannot be read as text");
            webkit_download_cancel(download.get());
        }));
}

void Download::dataReceived()
{
    if (m_nextProgress || !m_delegate)
        return;
    m_nextProgress = m_runLoop.after(progressInterval, [this] {
        m_nextProgress.reset();
        if (m_delegate && !m_ended)
            m_delegate->progressDidChange(*this);
    });
}

void Download::networkProcessEnded()
{
    // Which the engine would have done.
    if (!m_partial.empty())
        runInBackground<bool>(
            [partial = m_partial] {
                std::error_code ignored;
                std::filesystem::remove(partial.string() + engineSuffix, ignored);
                return std::filesystem::remove(partial, ignored);
            },
            [](bool) {});
    end("the web engine's network process ended");
}

void Download::takePlace()
{
    runInBackground<std::error_code>(
        [partial = m_partial, destination = m_destination] {
            std::error_code error;
            std::filesystem::rename(partial, destination, error);
            if (error) {
                std::error_code ignored;
                std::filesystem::remove(partial, ignored);
            }
            return error;
        },
        m_lifetime.guard([this](std::error_code error) {
            end(error ? std::optional("the file could not be put in its place: " + error.message()) : std::nullopt);
        }));
}

void Download::end(std::optional<std::string> const& failure)
{
    if (std::exchange(m_ended, true))
        return;
    m_nextProgress.reset();
    if (!m_delegate)
        return;
    if (failure)
        m_delegate->didFail(*this, *failure);
    else
        m_delegate->didFinish(*this);
}

}
