#pragma once

#include "Platform/Gtk/Ref.h"
#include "Support/TemporaryFolder.h"

#include <gio/gio.h>

#include <cstdint>
#include <string>

namespace tarn::test {

// A real web server (nginx) on loopback, in a process of its own, which serves what the test puts in its folder:
//   /sized/NAME    with its length, saved
//   /unsized/NAME  in chunks, without a length, saved
//   /slow/NAME     100 kB a second
//   /shown/NAME    as a page if its type can be shown
//   /missing/...   404, with a body that is to be saved
class WebServer {
public:
    WebServer();
    ~WebServer();
    WebServer(WebServer const&) = delete;
    WebServer& operator=(WebServer const&) = delete;

    std::string url(std::string const& path) const;
    // A file of that size which takes no room on the disk.
    void put(std::string const& name, std::uintmax_t size);
    // In the middle of whatever it is doing.
    void stop();

private:
    TemporaryFolder m_folder;
    int m_port { 0 };
    gtk::Ref<GSubprocess> m_process;
};

}
