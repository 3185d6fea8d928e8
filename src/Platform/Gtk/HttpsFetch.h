#pragma once

#include "Platform/Gtk/Ref.h"
#include "Platform/Gtk/RunLoop.h"
#include "Platform/Updater.h"

#include <libsoup/soup.h>

#include <memory>
#include <string>

namespace tarn::gtk {

// One file over HTTPS, into memory. Every hop of a redirect is HTTPS too. Ends with its reply, or when it is destroyed;
// the reply is then dropped.
class HttpsFetch {
public:
    struct Limits {
        std::size_t bytes;
        std::chrono::milliseconds time;
    };

    HttpsFetch(
        Ref<SoupSession>, Url const&, Limits, std::function<void(double)> progress, Reply<platform::FetchResult>);
    ~HttpsFetch();
    HttpsFetch(HttpsFetch const&) = delete;
    HttpsFetch& operator=(HttpsFetch const&) = delete;

    // The reply says no more than that there is nothing.
    void cancel();

private:
    void request(Url const&);
    void answered();
    void redirect();
    void read();
    void chunkRead(GBytes*, GError const*);
    void fail(std::string problem);
    void end(platform::FetchResult);

    Ref<SoupSession> m_session;
    Limits m_limits;
    std::function<void(double)> m_progress;
    Reply<platform::FetchResult> m_reply;
    Ref<GCancellable> m_cancellable { adopt(g_cancellable_new()) };
    Ref<SoupMessage> m_message;
    Ref<GInputStream> m_stream;
    std::string m_content;
    int m_redirects { 0 };
    std::unique_ptr<platform::Timer> m_deadline;
};

}
