#include "Web/FakeNotificationDaemon.h"

#include <utility>

namespace tarn::test {

namespace {

constexpr char const* busName = "org.freedesktop.Notifications";
constexpr char const* objectPath = "/org/freedesktop/Notifications";
constexpr char const* description = R"(
  <method name="GetCapabilities"><arg direction="out" type="as"/></method>
  <method name="Notify"><arg direction="in" type="s"/><arg direction="in" type="u"/><arg direction="in" type="s"/>
    <arg direction="in" type="s"/><arg direction="in" type="s"/><arg direction="in" type="as"/>
    <arg direction="in" type="a{sv}"/><arg direction="in" type="i"/><arg direction="out" type="u"/></method>
  <method name="CloseNotification"><arg direction="in" type="u"/></method>)";

}

FakeNotificationDaemon::FakeNotificationDaemon(std::vector<char const*> capabilities)
    : m_capabilities(std::move(capabilities))
    , m_service(busName)
{
    m_service.handle(objectPath, busName, description,
        [this](std::string const& method, GVariant* parameters, GDBusMethodInvocation* invocation) {
            call(method, parameters, invocation);
        });
}

void FakeNotificationDaemon::emit(char const* signal, GVariant* parameters) const
{
    m_service.emit(objectPath, busName, signal, parameters);
}

void FakeNotificationDaemon::emitAction(std::uint32_t id) const
{
    emit("ActionInvoked", g_variant_new("(us)", id, "default"));
}

void FakeNotificationDaemon::emitClosed(std::uint32_t id) const
{
    emit("NotificationClosed", g_variant_new("(uu)", id, 2U));
}

void FakeNotificationDaemon::emitToken(std::uint32_t id, std::string const& token) const
{
    emit("ActivationToken", g_variant_new("(us)", id, token.c_str()));
}

void FakeNotificationDaemon::setHanging(bool hangs)
{
    m_hangs = hangs;
    for (auto const& held : hangs ? decltype(m_held)() : std::exchange(m_held, {}))
        held();
}

void FakeNotificationDaemon::call(std::string const& method, GVariant* parameters, GDBusMethodInvocation* invocation)
{
    if (m_hangs) {
        m_held.push_back([this, method, parameters = g_variant_ref(parameters), invocation] {
            call(method, parameters, invocation);
            g_variant_unref(parameters);
        });
    } else if (method == "GetCapabilities") {
        auto* const list = g_variant_new_strv(m_capabilities.data(), static_cast<gssize>(m_capabilities.size()));
        g_dbus_method_invocation_return_value(invocation, g_variant_new_tuple(&list, 1));
    } else if (method == "CloseNotification") {
        std::uint32_t id = 0;
        g_variant_get(parameters, "(u)", &id);
        closed.push_back(id);
        g_dbus_method_invocation_return_value(invocation, nullptr);
        emitClosed(id);
    } else {
        notify(parameters, invocation);
    }
}

void FakeNotificationDaemon::notify(GVariant* parameters, GDBusMethodInvocation* invocation)
{
    if (!nextError.empty()) {
        g_dbus_method_invocation_return_dbus_error(invocation, std::exchange(nextError, {}).c_str(), "not now");
        return;
    }
    Notice notice;
    char const* application = nullptr;
    char const* icon = nullptr;
    char const* title = nullptr;
    char const* body = nullptr;
    GVariantIter* actions = nullptr;
    GVariantIter* hints = nullptr;
    g_variant_get(parameters, "(&su&s&s&sasa{sv}i)", &application, &notice.replaces, &icon, &title, &body, &actions,
        &hints, nullptr);
    notice.applicationName = application;
    notice.icon = icon;
    notice.title = title;
    notice.body = body;
    char const* text = nullptr;
    while (g_variant_iter_next(actions, "&s", &text))
        notice.actions.emplace_back(text);
    GVariant* value = nullptr;
    while (g_variant_iter_next(hints, "{&sv}", &text, &value)) {
        auto* const printed = g_variant_print(value, FALSE);
        notice.hints[text] = printed;
        g_free(printed);
        g_variant_unref(value);
    }
    g_variant_iter_free(actions);
    g_variant_iter_free(hints);

    auto const id = notice.replaces != 0 ? notice.replaces : nextID++;
    notices.push_back(std::move(notice));
    g_dbus_method_invocation_return_value(invocation, g_variant_new("(u)", id));
    if (onNotify)
        onNotify(id);
}

}
