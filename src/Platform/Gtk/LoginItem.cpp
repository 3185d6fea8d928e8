#include "Platform/Gtk/LoginItem.h"

#include "Platform/Gtk/Ref.h"
#include "Support/DurableFile.h"

#include <gio/gdesktopappinfo.h>
#include <glibmm/keyfile.h>

#include <algorithm>
#include <map>
#include <memory>
#include <vector>

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

using Options = std::map<Glib::ustring, Glib::VariantBase>;

}

LoginItem::LoginItem(Road road, std::string applicationId, std::filesystem::path const& configuration,
    platform::UserDefaults& defaults, RunLoop& runLoop, Glib::RefPtr<Gio::DBus::Connection> bus)
    : m_road(road)
    , m_applicationId(std::move(applicationId))
    , m_file(configuration / "autostart" / (m_applicationId + ".desktop"))
    , m_defaults(defaults)
    , m_runLoop(runLoop)
    , m_bus(std::move(bus))
{
}

LoginItem::~LoginItem()
{
    if (m_subscription)
        m_bus->signal_unsubscribe(m_subscription);
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
    if (m_subscription)
        m_bus->signal_unsubscribe(std::exchange(m_subscription, 0));
    if (!m_bus) {
        m_runLoop.post(m_lifetime.guard([this] { finish("There is no desktop to ask."); }));
        return;
    }
    // The answer may be there before that of the call: where it comes from is known beforehand.
    auto const token = "tarn_login_" + std::to_string(++m_requests);
    std::string sender = m_bus->get_unique_name().substr(1);
    std::ranges::replace(sender, '.', '_');
    m_subscription
        = m_bus->signal_subscribe([this, enabled](auto const&, auto const&, auto const&, auto const&, auto const&,
                                      Glib::VariantContainerBase const& answer) { portalAnswered(enabled, answer); },
            portalName, "org.freedesktop.portal.Request", "Response",
            std::string(portalPath) + "/request/" + sender + "/" + token);

    Options const options {
        { "handle_token", Glib::Variant<Glib::ustring>::create(token) },
        { "reason", Glib::Variant<Glib::ustring>::create("Tarn tells you about new mail.") },
        { "autostart", Glib::Variant<bool>::create(enabled) },
        { "commandline", Glib::Variant<std::vector<Glib::ustring>>::create({ "tarn", "--hidden" }) },
    };
    std::function<void(Glib::RefPtr<Gio::AsyncResult>&)> const asked
        = m_lifetime.guard([this, request = m_requests](Glib::RefPtr<Gio::AsyncResult>& result) {
              try {
                  m_bus->call_finish(result);
              } catch (Glib::Error const& error) {
                  if (request == m_requests)
                      finish(error.what());
              }
          });
    m_bus->call(portalPath, "org.freedesktop.portal.Background", "RequestBackground",
        Glib::VariantContainerBase::create_tuple(std::vector<Glib::VariantBase> {
            Glib::Variant<Glib::ustring>::create(""), Glib::Variant<Options>::create(options) }),
        asked, portalName);
}

void LoginItem::portalAnswered(bool enabled, Glib::VariantContainerBase const& answer)
{
    if (m_subscription)
        m_bus->signal_unsubscribe(std::exchange(m_subscription, 0));
    if (!answer.is_of_type(Glib::VariantType("(ua{sv})"))) {
        finish("Your desktop gave an answer that makes no sense.");
        return;
    }
    Glib::Variant<guint32> response;
    Glib::Variant<Options> results;
    answer.get_child(response, 0);
    answer.get_child(results, 1);
    bool granted = enabled;
    if (auto const entry = results.get().find("autostart");
        entry != results.get().end() && entry->second.is_of_type(Glib::VARIANT_TYPE_BOOL))
        granted = Glib::VariantBase::cast_dynamic<Glib::Variant<bool>>(entry->second).get();
    if (response.get() != 0 || granted != enabled) {
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
