#include "Platform/Gtk/Updater.h"

#include "Platform/Gtk/BackgroundTask.h"
#include "Platform/Gtk/ProgressPanel.h"
#include "Support/DurableFile.h"

#include <gio/gio.h>

namespace tarn::gtk {

namespace {

constexpr char const* packageType = "application/vnd.debian.binary-package";

// "Package: tarn\nVersion: 2.1.0\n"
std::string field(std::string const& control, std::string const& name)
{
    auto const start = ("\n" + control).find("\n" + name + ": ");
    if (start == std::string::npos)
        return {};
    auto const value = start + name.size() + 2;
    return control.substr(value, control.find('\n', value) - value);
}

}

Updater::Updater(Options options, Log log)
    : m_options(std::move(options))
    , m_log(std::move(log))
{
}

Updater::~Updater() = default;

void Updater::fetch(
    Url const& url, std::size_t limit, std::function<void(double)> progress, Reply<platform::FetchResult> reply)
{
    if (!m_session) {
        m_session = adopt(soup_session_new_with_options("timeout", 60U, "user-agent", "Tarn/" TARN_VERSION, nullptr));
        if (m_options.sessionSetUp)
            m_options.sessionSetUp(m_session.get());
    }
    m_fetch = std::make_unique<HttpsFetch>(m_session, url,
        HttpsFetch::Limits { .bytes = limit, .time = m_options.timeLimit }, std::move(progress), std::move(reply));
}

void Updater::cancelFetch()
{
    if (m_fetch)
        m_fetch->cancel();
}

std::unique_ptr<platform::ProgressPanel> Updater::showProgress(std::string const& text, std::function<void()> onCancel)
{
    return std::make_unique<ProgressPanel>(text, std::move(onCancel));
}

void Updater::keep(std::string content, Reply<std::optional<platform::PackageFile>> reply)
{
    auto const held = std::make_shared<Reply<std::optional<platform::PackageFile>>>(std::move(reply));
    auto const file = m_options.folder / "tarn-update.deb";
    runInBackground<std::string>(
        [file, content = std::move(content)]() -> std::string {
            try {
                createPrivateFolder(file.parent_path());
                replaceFileDurably(file, content);
                return {};
            } catch (std::filesystem::filesystem_error const& error) {
                return error.what();
            }
        },
        m_lifetime.guard([this, held, file](std::string const& problem) {
            if (problem.empty())
                ask(file, std::move(*held));
            else
                m_log("[Updates] could not keep the package: " + problem);
        }));
}

void Updater::ask(std::filesystem::path const& file, Reply<std::optional<platform::PackageFile>> reply)
{
    struct Question {
        std::filesystem::path file;
        Reply<std::optional<platform::PackageFile>> reply;
        Log log;
    };
    auto question = std::make_unique<Question>(Question { file, std::move(reply), m_log });
    GError* error = nullptr;
    auto const reader
        = adopt(g_subprocess_new(GSubprocessFlags(G_SUBPROCESS_FLAGS_STDOUT_PIPE | G_SUBPROCESS_FLAGS_STDERR_SILENCE),
            &error, "dpkg-deb", "--field", file.c_str(), "Package", "Version", nullptr));
    if (!reader) {
        m_log(std::string("[Updates] could not look into the package: ") + error->message);
        g_error_free(error);
        return;
    }
    g_subprocess_communicate_utf8_async(
        reader.get(), nullptr, nullptr,
        [](GObject* process, GAsyncResult* result, gpointer data) {
            std::unique_ptr<Question> const asked(static_cast<Question*>(data));
            g_autofree char* output = nullptr;
            if (!g_subprocess_communicate_utf8_finish(G_SUBPROCESS(process), result, &output, nullptr, nullptr)
                || !g_subprocess_get_successful(G_SUBPROCESS(process)) || !output) {
                asked->log("[Updates] what came is no package");
                return;
            }
            std::move(asked->reply)(platform::PackageFile {
                .path = asked->file, .name = field(output, "Package"), .version = field(output, "Version") });
        },
        question.release());
}

void Updater::install(platform::PackageFile const& package, Reply<std::optional<std::string>> reply)
{
    auto const installer = adopt(g_app_info_get_default_for_type(packageType, FALSE));
    if (!installer) {
        std::move(reply)("There is no program for packages on this computer.");
        return;
    }
    auto const file = adopt(g_file_new_for_path(package.path.c_str()));
    auto* const uri = g_file_get_uri(file.get());
    GList uris { uri, nullptr, nullptr };
    g_app_info_launch_uris_async(
        installer.get(), &uris, nullptr, nullptr,
        [](GObject* application, GAsyncResult* result, gpointer data) {
            std::unique_ptr<Reply<std::optional<std::string>>> const answer(
                static_cast<Reply<std::optional<std::string>>*>(data));
            GError* error = nullptr;
            if (g_app_info_launch_uris_finish(G_APP_INFO(application), result, &error)) {
                std::move (*answer)(std::nullopt);
                return;
            }
            std::move (*answer)(std::string(error->message));
            g_error_free(error);
        },
        new Reply<std::optional<std::string>>(std::move(reply)));
    g_free(uri);
}

}
