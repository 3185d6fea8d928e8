#include "Web/WebServer.h"

#include <fstream>
#include <stdexcept>
#include <thread>

namespace tarn::test {

namespace {

int freePort()
{
    auto const listener = gtk::adopt(g_socket_listener_new());
    auto const port = g_socket_listener_add_any_inet_port(listener.get(), nullptr, nullptr);
    g_socket_listener_close(listener.get());
    return port;
}

bool answers(int port)
{
    auto const client = gtk::adopt(g_socket_client_new());
    auto const connection = gtk::adopt(
        g_socket_client_connect_to_host(client.get(), "127.0.0.1", static_cast<guint16>(port), nullptr, nullptr));
    return static_cast<bool>(connection);
}

constexpr char const* configuration = R"(
daemon off;
master_process off;
pid FOLDER/nginx.pid;
error_log stderr crit;
events { }
http {
  access_log off;
  client_body_temp_path FOLDER/body;
  proxy_temp_path FOLDER/proxy;
  fastcgi_temp_path FOLDER/fastcgi;
  uwsgi_temp_path FOLDER/uwsgi;
  scgi_temp_path FOLDER/scgi;
  types { text/html html; application/pdf pdf; }
  default_type application/octet-stream;
  sendfile on;
  server {
    listen 127.0.0.1:PORT;
    location ~ ^/sized/(.*) { add_header Content-Disposition attachment; alias FOLDER/files/$1; }
    location ~ ^/unsized/(.*) { add_header Content-Disposition attachment; ssi on; ssi_types *; alias FOLDER/files/$1; }
    location ~ ^/slow/(.*) { limit_rate 100k; add_header Content-Disposition AttachMent; alias FOLDER/files/$1; }
    location ~ ^/shown/(.*) { alias FOLDER/files/$1; }
    location /missing/ { add_header Content-Disposition attachment always; return 404 "There is no such file."; }
  }
}
)";

void replaceAll(std::string& text, std::string const& from, std::string const& to)
{
    for (auto at = text.find(from); at != text.npos; at = text.find(from, at + to.size()))
        text.replace(at, from.size(), to);
}

}

WebServer::WebServer()
    : m_port(freePort())
{
    std::filesystem::create_directory(m_folder / "files");
    std::string text = configuration;
    replaceAll(text, "FOLDER", m_folder.path().string());
    replaceAll(text, "PORT", std::to_string(m_port));
    auto const file = (m_folder / "nginx.conf").string();
    std::ofstream(file) << text;

    GError* error = nullptr;
    m_process = gtk::adopt(g_subprocess_new(G_SUBPROCESS_FLAGS_NONE, &error, "/usr/sbin/nginx", "-e", "stderr", "-p",
        m_folder.path().c_str(), "-c", file.c_str(), nullptr));
    if (!m_process)
        throw std::runtime_error(error->message);
    for (int tries = 0; !answers(m_port); ++tries) {
        if (tries == 500)
            throw std::runtime_error("nginx does not answer");
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
}

WebServer::~WebServer()
{
    stop();
}

std::string WebServer::url(std::string const& path) const
{
    return "http://127.0.0.1:" + std::to_string(m_port) + path;
}

void WebServer::put(std::string const& name, std::uintmax_t size)
{
    auto const file = m_folder.path() / "files" / name;
    std::ofstream { file };
    std::filesystem::resize_file(file, size);
}

void WebServer::stop()
{
    g_subprocess_force_exit(m_process.get());
    g_subprocess_wait(m_process.get(), nullptr, nullptr);
}

}
