#include "Platform/Gtk/LoginItem.h"

#include "Platform/Gtk/Ref.h"
#include "Support/DurableFile.h"

#include <gio/gdesktopappinfo.h>
#include <glibmm/keyfile.h>

#include <algorithm>
#include <array>
#include <string_view>

namespace tarn::gtk {

namespace {

constexpr char const* group = "Desktop Entry";
constexpr char const* gnomeSwitch = "X-GNOME-Autostart-enabled";
constexpr char const* rememberedKey = "StartsAtLogIn";
constexpr char const* portalName = "org.freedesktop.portal.Desktop";
constexpr char const* portalPath = "/org/freedesktop/portal/desktop";

// As the command line of a desktop file quotes an argument.
std::string quoted(std::string const& argument)
{
    std::string result = "\"";
    for (char const character : argument) {
        if (std::string_view("\"`$\\").find(character) != std::string_view::npos)
            result += '\\';
        result += character;
        if (character == '%')
            result += '%';
    }
    return result + '"';
}

// An installed program is started by its name, so that it may move with an update; another one where it lies.
std::string programCommand(std::string const& desktopFile)
{
    if (auto const installed = adopt(g_desktop_app_info_new(desktopFile.c_str())))
        return g_app_info_get_executable(G_APP_INFO(installed.get()));
    // The image lies elsewhere at each start, its file does not.
    if (auto const* const image = g_getenv("APPIMAGE"))
        return quoted(image);
    std::error_code error;
    return quoted(std::filesystem::read_symlink("/proc/self/exe", error).string());
}

}

LoginItem::LoginItem(Road road, std::string applicationId, std::filesystem::path const& configuration,
    platform::UserDefaults& defaults, RunLoop& runLoop, GDBusConnection* bus)
    : m_road(road)
    , m_applicationId(std::move(applicationId))
    , m_file(configuration / "autostart" / (m_applicationId + ".desktop"))
    , m_defaults(defaults)
    , m_runLoop(runLoop)
    , m_bus(bus ? share(bus) : Ref<GDBusConnection>())
    , m_asking(adopt(g_cancellable_new()))
{
}

LoginItem::~LoginItem()
{
    g_cancellable_cancel(m_asking.get());
}

bool LoginItem::isEnabled() const
{
    if (m_road == Road::portal)
        return m_defaults.string(rememberedKey) == "true";
    auto const content = readFile(m_file);
    if (!content)
        return false;
    try {
        auto const file = Glib::KeyFile::create();
        file->load_from_data(*content);
        auto const is = [&](char const* key, bool otherwise) {
            return file->has_key(group, key) ? file->get_boolean(group, key) : otherwise;
        };
        return !is("Hidden", false) && is(gnomeSwitch, true);
    } catch (Glib::Error const&) {
        return false;
    }
}

void LoginItem::setEnabled(bool enabled, Reply<Problem> reply)
{
    m_reply.emplace(std::move(reply));
    if (m_road == Road::portal) {
        askPortal(enabled);
        return;
    }
    m_runLoop.post(m_lifetime.guard([this, problem = enabled ? write() : remove()] { finish(problem); }));
}

LoginItem::Problem LoginItem::write() const
{
    auto const command = programCommand(m_applicationId + ".desktop") + " --hidden";
    if (!g_utf8_validate(command.data(), static_cast<gssize>(command.size()), nullptr))
        return "Tarn lies in a folder whose name is not text that your desktop could read.";
    auto const file = Glib::KeyFile::create();
    file->set_string(group, "Type", "Application");
    file->set_string(group, "Name", "Tarn");
    file->set_string(group, "Icon", m_applicationId);
    file->set_string(group, "Exec", command);
    file->set_boolean(group, gnomeSwitch, true);
    try {
        createPrivateFolder(m_file.parent_path());
        replaceFileDurably(m_file, file->to_data().raw());
    } catch (std::filesystem::filesystem_error const& error) {
        return error.code().message();
    }
    return std::nullopt;
}

LoginItem::Problem LoginItem::remove() const
{
    std::error_code error;
    std::filesystem::remove(m_file, error);
    return error ? Problem(error.message()) : std::nullopt;
}

void LoginItem::askPortal(bool enabled)
{
    g_cancellable_cancel(m_asking.get());
    m_asking = adopt(g_cancellable_new());
    if (!m_bus) {
        m_runLoop.post(m_lifetime.guard([this] { finish("There is no desktop to ask."); }));
        return;
    }
    // The answer may be there before that of the call: where it comes from is known beforehand.
    auto const token = "tarn_login_" + std::to_string(++m_requests);
    std::string sender = g_dbus_connection_get_unique_name(m_bus.get()) + 1;
    std::ranges::replace(sender, '.', '_');
    auto const request = std::string(portalPath) + "/request/" + sender + "/" + token;
    m_answer = BusSignal(m_bus.get(),
        {
            .service = portalName,
            .path = request.c_str(),
            .interface = "org.freedesktop.portal.Request",
            .name = "Response",
            .type = "(ua{sv})",
        },
        [this, enabled](GVariant* answer) { portalAnswered(enabled, answer); });

    std::array<char const*, 3> const command { "tarn", "--hidden", nullptr };
    GVariantBuilder options;
    g_variant_builder_init(&options, G_VARIANT_TYPE_VARDICT);
    g_variant_builder_add(&options, "{sv}", "handle_token", g_variant_new_string(token.c_str()));
    g_variant_builder_add(&options, "{sv}", "reason", g_variant_new_string("Tarn tells you about new mail."));
    g_variant_builder_add(&options, "{sv}", "autostart", g_variant_new_boolean(enabled));
    g_variant_builder_add(&options, "{sv}", "commandline", g_variant_new_strv(command.data(), -1));
    g_dbus_connection_call(
        m_bus.get(), portalName, portalPath, "org.freedesktop.portal.Background", "RequestBackground",
        g_variant_new("(sa{sv})", "", &options), nullptr, G_DBUS_CALL_FLAGS_NONE, -1, m_asking.get(),
        [](GObject* bus, GAsyncResult* result, gpointer self) {
            GError* error = nullptr;
            if (auto* const handle = g_dbus_connection_call_finish(G_DBUS_CONNECTION(bus), result, &error)) {
                g_variant_unref(handle);
                return;
            }
            if (!g_error_matches(error, G_IO_ERROR, G_IO_ERROR_CANCELLED))
                static_cast<LoginItem*>(self)->finish("The desktop could not be asked: " + std::string(error->message));
            g_error_free(error);
        },
        this);
}

void LoginItem::portalAnswered(bool enabled, GVariant* answer)
{
    m_answer = {};
    guint32 response = 0;
    GVariant* results = nullptr;
    g_variant_get(answer, "(u@a{sv})", &response, &results);
    gboolean granted = enabled;
    g_variant_lookup(results, "autostart", "b", &granted);
    g_variant_unref(results);
    if (response != 0 || (granted != FALSE) != enabled) {
        finish("Your desktop did not allow it. Its settings say which applications may run in the background.");
        return;
    }
    m_defaults.setString(rememberedKey, enabled ? "true" : "false");
    finish(std::nullopt);
}

void LoginItem::finish(Problem const& problem)
{
    if (auto reply = std::exchange(m_reply, std::nullopt))
        std::move (*reply)(problem);
}

}
