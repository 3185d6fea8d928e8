#include "Platform/Gtk/NotificationDaemon.h"

#include "Support/Cases.h"

#include <gio/gio.h>

#include <chrono>
#include <memory>
#include <string_view>
#include <utility>

namespace tarn::gtk {

namespace {

using namespace std::chrono_literals;

constexpr char const* busName = "org.freedesktop.Notifications";
constexpr char const* objectPath = "/org/freedesktop/Notifications";
constexpr char const* repetitionError = "org.freedesktop.Notifications.Error.ExcessNotificationGeneration";
// A notification that was given up on may still be shown, with an id that nobody learns: better to wait long.
constexpr auto patience = 120s;
constexpr auto shortPatience = 25s;

using Variant = std::unique_ptr<GVariant, decltype(&g_variant_unref)>;

std::string wellFormed(std::string const& text)
{
    auto* const valid = g_utf8_make_valid(text.data(), static_cast<gssize>(text.size()));
    std::string result = valid;
    g_free(valid);
    return result;
}

std::string escaped(std::string const& text)
{
    auto* const markup = g_markup_escape_text(text.data(), static_cast<gssize>(text.size()));
    std::string result = markup;
    g_free(markup);
    return result;
}

std::string messageOf(GError const* error)
{
    // Without the error's D-Bus name in front.
    auto* const copy = g_error_copy(error);
    g_dbus_error_strip_remote_error(copy);
    std::string message = copy->message;
    g_error_free(copy);
    return message;
}

bool isRepetition(GError const* error)
{
    auto* const name = g_dbus_error_get_remote_error(error);
    bool const result = name && std::string_view(name) == repetitionError;
    g_free(name);
    return result;
}

}

NotificationDaemon::NotificationDaemon(Glib::RefPtr<Gio::DBus::Connection> bus, std::string applicationId)
    : m_bus(std::move(bus))
    , m_applicationId(std::move(applicationId))
{
    if (!m_bus)
        return;
    m_subscription = g_dbus_connection_signal_subscribe(
        m_bus->gobj(), busName, busName, nullptr, objectPath, nullptr, G_DBUS_SIGNAL_FLAGS_NONE,
        [](GDBusConnection*, char const*, char const*, char const*, char const* signal, GVariant* parameters,
            gpointer self) { static_cast<NotificationDaemon*>(self)->received(signal, parameters); },
        this, nullptr);
    m_watch = g_bus_watch_name_on_connection(
        m_bus->gobj(), busName, G_BUS_NAME_WATCHER_FLAGS_NONE,
        [](GDBusConnection*, char const*, char const*, gpointer self) {
            static_cast<NotificationDaemon*>(self)->appeared();
        },
        [](GDBusConnection*, char const*, gpointer self) { static_cast<NotificationDaemon*>(self)->vanished(); }, this,
        nullptr);
}

NotificationDaemon::~NotificationDaemon()
{
    if (!m_bus)
        return;
    g_bus_unwatch_name(m_watch);
    g_dbus_connection_signal_unsubscribe(m_bus->gobj(), m_subscription);
}

void NotificationDaemon::appeared()
{
    // One may take the name from another.
    if (m_present)
        vanished();
    m_present = true;
    ++m_generation;
    settle();
    call(busName, objectPath, busName, "GetCapabilities", nullptr, "(as)", shortPatience,
        [this, generation = m_generation](GVariant* reply, GError const*) {
            if (generation != m_generation)
                return;
            // One that does not say is asked nothing special; escaped text is at worst ugly.
            m_capabilities = reply ? NotificationReplies::capabilities(reply)
                                   : NotificationReplies::Capabilities { .actions = true, .bodyMarkup = true };
            for (auto const& waiting : std::exchange(m_waitingForCapabilities, {}))
                waiting();
        });
}

void NotificationDaemon::vanished()
{
    bool const wasThere = std::exchange(m_present, false);
    ++m_generation;
    m_capabilities.reset();
    settle();
    if (wasThere && onVanish)
        onVanish();
    // They find out for themselves that it has gone, or start it again.
    for (auto const& waiting : std::exchange(m_waitingForCapabilities, {}))
        waiting();
}

void NotificationDaemon::settle()
{
    bool const isNew = !std::exchange(m_settled, true);
    if (m_present)
        answerReach(std::nullopt);
    else if (isNew && !m_reaching.empty())
        start();
}

void NotificationDaemon::reach(std::function<void(std::optional<std::string>)> completion)
{
    m_reaching.push_back(std::move(completion));
    if (!m_bus)
        answerReach("there is no session bus");
    else if (m_present)
        answerReach(std::nullopt);
    else if (m_settled && m_reaching.size() == 1)
        start();
}

void NotificationDaemon::start()
{
    call("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "StartServiceByName",
        g_variant_new("(su)", busName, 0U), "(u)", shortPatience, [this](GVariant* reply, GError const* error) {
            answerReach(reply ? std::nullopt : std::optional("no program shows notifications: " + messageOf(error)));
        });
}

void NotificationDaemon::answerReach(std::optional<std::string> const& problem)
{
    for (auto const& reaching : std::exchange(m_reaching, {}))
        reaching(problem);
}

void NotificationDaemon::notify(Notice notice, std::function<void(std::uint32_t, std::optional<Problem>)> completion)
{
    reach([this, notice = std::move(notice), completion = std::move(completion)](
              std::optional<std::string> const& problem) {
        if (problem)
            completion(0, Problem { *problem });
        else if (m_present && !m_capabilities)
            m_waitingForCapabilities.emplace_back([this, notice, completion] { send(notice, completion); });
        else
            send(notice, completion);
    });
}

void NotificationDaemon::send(
    Notice const& notice, std::function<void(std::uint32_t, std::optional<Problem>)> const& completion)
{
    auto const capabilities
        = m_capabilities.value_or(NotificationReplies::Capabilities { .actions = true, .bodyMarkup = true });
    auto const body = wellFormed(notice.body);

    GVariantBuilder actions;
    g_variant_builder_init(&actions, G_VARIANT_TYPE("as"));
    if (capabilities.actions) {
        // Where it is drawn as a button, the label is what makes it one.
        g_variant_builder_add(&actions, "s", "default");
        g_variant_builder_add(&actions, "s", "Open");
    }
    GVariantBuilder hints;
    g_variant_builder_init(&hints, G_VARIANT_TYPE("a{sv}"));
    g_variant_builder_add(&hints, "{sv}", "desktop-entry", g_variant_new_string(m_applicationId.c_str()));
    g_variant_builder_add(&hints, "{sv}", "urgency", g_variant_new_byte(notice.isQuiet ? 0 : 1));
    if (notice.hasSound)
        g_variant_builder_add(&hints, "{sv}", "sound-name", g_variant_new_string("message-new-email"));
    else
        g_variant_builder_add(&hints, "{sv}", "suppress-sound", g_variant_new_boolean(TRUE));

    auto* const parameters = g_variant_new("(susssasa{sv}i)", "Tarn", notice.replaces, m_applicationId.c_str(),
        wellFormed(notice.title).c_str(), (capabilities.bodyMarkup ? escaped(body) : body).c_str(), &actions, &hints,
        -1);
    call(busName, objectPath, busName, "Notify", parameters, "(u)", patience,
        [this, completion, generation = m_generation](GVariant* reply, GError const* error) {
            if (!reply) {
                completion(0, Problem { messageOf(error), isRepetition(error) });
                return;
            }
            std::uint32_t id = 0;
            g_variant_get(reply, "(u)", &id);
            completion(generation == m_generation ? id : 0, std::nullopt);
        });
}

void NotificationDaemon::close(std::uint32_t id)
{
    // It may be gone already, and the daemon complain about it: that is as good.
    call(busName, objectPath, busName, "CloseNotification", g_variant_new("(u)", id), nullptr, shortPatience,
        [](GVariant*, GError const*) {});
}

void NotificationDaemon::received(char const* name, GVariant* parameters) const
{
    std::visit(Cases {
                   [](std::monostate) {},
                   [this](NotificationReplies::Action const& action) {
                       if (onAction)
                           onAction(action.id);
                   },
                   [this](NotificationReplies::Closed const& closed) {
                       if (onClosed)
                           onClosed(closed.id);
                   },
                   [this](NotificationReplies::ActivationToken const& activation) {
                       if (onActivationToken)
                           onActivationToken(activation.id, activation.token);
                   },
               },
        NotificationReplies::signal(name, parameters));
}

void NotificationDaemon::call(char const* destination, char const* path, char const* interface, char const* method,
    GVariant* parameters, char const* replyType, std::chrono::milliseconds timeout, Done done)
{
    g_dbus_connection_call(
        m_bus->gobj(), destination, path, interface, method, parameters,
        replyType ? G_VARIANT_TYPE(replyType) : nullptr, G_DBUS_CALL_FLAGS_NONE, static_cast<int>(timeout.count()),
        nullptr,
        [](GObject* connection, GAsyncResult* result, gpointer data) {
            std::unique_ptr<Done> const finished(static_cast<Done*>(data));
            GError* error = nullptr;
            Variant const reply(
                g_dbus_connection_call_finish(G_DBUS_CONNECTION(connection), result, &error), &g_variant_unref);
            (*finished)(reply.get(), error);
            g_clear_error(&error);
        },
        new Done(m_lifetime.guard(std::move(done))));
}

}
