#include "Platform/Gtk/Workspace.h"

#include "Platform/Gtk/BackgroundTask.h"
#include "Platform/Gtk/Ref.h"
#include "Platform/Gtk/Renderers.h"

#include <gdk/gdk.h>
#include <gio/gdesktopappinfo.h>
#include <gio/gio.h>

#include <algorithm>
#include <array>
#include <memory>

namespace tarn::gtk {

namespace {

// Failures are logged as "COMPLAINT: reason".
void launchDefault(char const* uri, Log const& log, std::string const& complaint)
{
    auto const context = adopt(G_APP_LAUNCH_CONTEXT(gdk_display_get_app_launch_context(gdk_display_get_default())));
    for (auto const* const name : chosenRendererVariables())
        g_app_launch_context_unsetenv(context.get(), name);

    struct Request {
        Log log;
        std::string complaint;
    };
    g_app_info_launch_default_for_uri_async(
        uri, context.get(), nullptr,
        [](GObject*, GAsyncResult* result, gpointer data) {
            std::unique_ptr<Request> const request(static_cast<Request*>(data));
            GError* error = nullptr;
            if (!g_app_info_launch_default_for_uri_finish(result, &error)) {
                request->log(request->complaint + ": " + error->message);
                g_error_free(error);
            }
        },
        new Request { log, complaint });
}

enum class Opening { asDocument, asProgram, impossible };

// A launcher is a program without being executable.
Opening openingOf(std::filesystem::path const& path)
{
    static constexpr std::array programs { "application/java-archive", "application/vnd.appimage",
        "application/vnd.microsoft.portable-executable", "application/x-desktop", "application/x-executable",
        "application/x-iso9660-appimage", "application/x-java-archive", "application/x-ms-dos-executable",
        "application/x-ms-shortcut", "application/x-msdownload", "application/x-msi", "application/x-sharedlib",
        "application/x-shellscript" };
    auto const file = adopt(g_file_new_for_path(path.c_str()));
    auto const info = adopt(
        g_file_query_info(file.get(), G_FILE_ATTRIBUTE_STANDARD_CONTENT_TYPE "," G_FILE_ATTRIBUTE_ACCESS_CAN_EXECUTE,
            G_FILE_QUERY_INFO_NONE, nullptr, nullptr));
    if (!info)
        return Opening::impossible;
    auto const* const type = g_file_info_get_content_type(info.get());
    bool const isProgram = !type || g_file_info_get_attribute_boolean(info.get(), G_FILE_ATTRIBUTE_ACCESS_CAN_EXECUTE)
        || std::ranges::any_of(programs, [&](auto const* program) { return g_content_type_is_a(type, program); });
    return isProgram ? Opening::asProgram : Opening::asDocument;
}

}

void Workspace::open(Url const& url)
{
    launchDefault(
        url.string().c_str(), m_log, "[Links] could not open a \"" + std::string(url.scheme()) + "\" address");
}

void Workspace::openFile(std::filesystem::path const& file)
{
    runInBackground<Opening>([file] { return openingOf(file); }, m_lifetime.guard([this, file](Opening opening) {
        auto* const uri = g_filename_to_uri(file.c_str(), nullptr, nullptr);
        if (opening == Opening::asProgram)
            reveal(file);
        else if (opening == Opening::asDocument && uri)
            launchDefault(uri, m_log, "[Files] could not open a file");
        else
            m_log("[Files] could not open a file: it is not there any more");
        g_free(uri);
    }));
}

void Workspace::reveal(std::filesystem::path const& file)
{
    auto* const application = g_application_get_default();
    auto* const bus = application ? g_application_get_dbus_connection(application) : nullptr;
    auto* const uri = g_filename_to_uri(file.c_str(), nullptr, nullptr);
    if (!bus || !uri) {
        m_log("[Files] there is no file manager to ask");
        g_free(uri);
        return;
    }
    std::array<char const*, 2> const uris { uri, nullptr };
    g_dbus_connection_call(
        bus, "org.freedesktop.FileManager1", "/org/freedesktop/FileManager1", "org.freedesktop.FileManager1",
        "ShowItems", g_variant_new("(^ass)", uris.data(), ""), nullptr, G_DBUS_CALL_FLAGS_NONE, -1, nullptr,
        [](GObject* connection, GAsyncResult* result, gpointer data) {
            std::unique_ptr<Log> const log(static_cast<Log*>(data));
            GError* error = nullptr;
            if (auto* const answer = g_dbus_connection_call_finish(G_DBUS_CONNECTION(connection), result, &error)) {
                g_variant_unref(answer);
            } else {
                (*log)(std::string("[Files] could not show a file: ") + error->message);
                g_error_free(error);
            }
        },
        new Log(m_log));
    g_free(uri);
}

bool Workspace::isDefaultHandler(std::string const& scheme) const
{
    auto const handler = adopt(g_app_info_get_default_for_uri_scheme(scheme.c_str()));
    auto const* const id = handler ? g_app_info_get_id(handler.get()) : nullptr;
    return id && id == m_desktopFile;
}

void Workspace::setDefaultHandler(std::string const& scheme, Reply<std::optional<std::string>> reply)
{
    std::optional<std::string> problem;
    auto const own = adopt(g_desktop_app_info_new(m_desktopFile.c_str()));
    if (g_file_test("/.flatpak-info", G_FILE_TEST_EXISTS)) {
        problem = "Tarn runs in a sandbox that cannot change this. Choose Tarn for mail in the default applications of "
                  "your desktop's settings.";
    } else if (!own) {
        problem = "Tarn is not installed on this computer: your desktop knows no application " + m_desktopFile
            + ". Install Tarn, then try again.";
    } else {
        GError* error = nullptr;
        if (!g_app_info_set_as_default_for_type(
                G_APP_INFO(own.get()), ("x-scheme-handler/" + scheme).c_str(), &error)) {
            problem = error->message;
            g_error_free(error);
        }
    }
    auto const held = std::make_shared<Reply<std::optional<std::string>>>(std::move(reply));
    m_runLoop.post([held, problem] { std::move (*held)(problem); });
}

}
