#pragma once

#include "Web/BusService.h"

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace tarn::test {

// A notification daemon on a bus connection of its own, whose manners the test chooses. It ends with its scope, as a
// process would.
class FakeNotificationDaemon {
public:
    struct Notice {
        std::string applicationName;
        std::uint32_t replaces { 0 };
        std::string icon;
        std::string title;
        std::string body;
        std::vector<std::string> actions;
        // Printed values.
        std::map<std::string, std::string> hints;
    };

    explicit FakeNotificationDaemon(std::vector<char const*> capabilities = { "actions", "body", "body-markup" });
    FakeNotificationDaemon(FakeNotificationDaemon const&) = delete;
    FakeNotificationDaemon& operator=(FakeNotificationDaemon const&) = delete;

    void emitAction(std::uint32_t id) const;
    void emitClosed(std::uint32_t id) const;
    void emitToken(std::uint32_t id, std::string const& token) const;

    // While it hangs, calls are taken and not answered.
    void setHanging(bool);
    // Unless the test says otherwise the next one counts up, and a replaced one keeps its id.
    std::uint32_t nextID { 1 };
    // A D-Bus error for the next Notify.
    std::string nextError;
    // Called for each Notify, right after its answer.
    std::function<void(std::uint32_t id)> onNotify;
    std::vector<Notice> notices;
    std::vector<std::uint32_t> closed;

private:
    void call(std::string const& method, GVariant*, GDBusMethodInvocation*);
    void notify(GVariant*, GDBusMethodInvocation*);
    void emit(char const* signal, GVariant*) const;

    std::vector<char const*> m_capabilities;
    BusService m_service;
    bool m_hangs { false };
    std::vector<std::function<void()>> m_held;
};

}
