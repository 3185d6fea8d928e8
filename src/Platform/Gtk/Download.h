#pragma once

#include "Platform/Download.h"
#include "Platform/Gtk/NetworkProcessWatch.h"
#include "Platform/Gtk/Ref.h"
#include "Platform/Gtk/RunLoop.h"
#include "Platform/Gtk/Signal.h"
#include "Support/Lifetime.h"

#include <webkit/webkit.h>

#include <filesystem>
#include <memory>
#include <optional>

namespace tarn::gtk {

// A download of the engine. It writes beside its destination, under a name of its own, and takes its place when it is
// complete: the engine by itself would remove a file that is there, also when it then fails.
class Download final : public platform::Download {
public:
    // Of a download that has just started.
    explicit Download(WebKitDownload*);
    ~Download() override;

    void setDelegate(platform::DownloadDelegate* delegate) override { m_delegate = delegate; }
    platform::DownloadProgress progress() const override;
    void cancel() override { webkit_download_cancel(m_download.get()); }

private:
    gboolean decideDestination(char const* suggestedFilename);
    void write(std::optional<std::filesystem::path> const& destination);
    void dataReceived();
    void networkProcessEnded();
    void takePlace();
    // Tells the end, once; the object may be gone afterwards.
    void end(std::optional<std::string> const& failure);

    Ref<WebKitDownload> m_download;
    platform::DownloadDelegate* m_delegate { nullptr };
    std::filesystem::path m_destination;
    std::filesystem::path m_partial;
    bool m_ended { false };
    RunLoop m_runLoop;
    std::unique_ptr<platform::Timer> m_nextProgress;
    Signal<gboolean(char const*)> m_onDecideDestination;
    Signal<void(guint64)> m_onData;
    Signal<void(GError*)> m_onFailed;
    Signal<void()> m_onFinished;
    std::optional<NetworkProcessWatch> m_networkProcess;
    Lifetime m_lifetime;
};

}
