#pragma once

#include "Platform/Gtk/BusSignal.h"
#include "Platform/Gtk/RunLoop.h"
#include "Platform/LoginItem.h"
#include "Platform/UserDefaults.h"
#include "Support/Lifetime.h"

#include <filesystem>

namespace tarn::gtk {

// A desktop file in the user's autostart folder. A sandbox has no such folder: there the Background portal is asked,
// and its last answer remembered, since it cannot be asked for its state.
class LoginItem final : public platform::LoginItem {
public:
    enum class Road { autostartFolder, portal };

    // The folder is the user's for configuration. The defaults and the run loop outlive this; the bus may be none.
    LoginItem(Road, std::string applicationId, std::filesystem::path const& configuration, platform::UserDefaults&,
        RunLoop&, GDBusConnection*);
    ~LoginItem() override;

    bool isEnabled() const override;
    void setEnabled(bool, Reply<std::optional<std::string>>) override;

private:
    using Problem = std::optional<std::string>;

    Problem write() const;
    Problem remove() const;
    void askPortal(bool enabled);
    void portalAnswered(bool enabled, GVariant* answer);
    void finish(Problem const&);

    Road m_road;
    std::string m_applicationId;
    std::filesystem::path m_file;
    platform::UserDefaults& m_defaults;
    RunLoop& m_runLoop;
    Ref<GDBusConnection> m_bus;
    Ref<GCancellable> m_asking;
    BusSignal m_answer;
    std::optional<Reply<Problem>> m_reply;
    unsigned m_requests { 0 };
    Lifetime m_lifetime;
};

}
