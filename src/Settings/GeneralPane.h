#pragma once

#include "Platform/LoginItem.h"
#include "Support/Lifetime.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace tarn {

// The settings' page about the application as a whole: whether it starts when the user logs in.
class GeneralPane {
public:
    static constexpr std::string_view title = "General";
    static constexpr std::string_view iconName = "tarn-settings-symbolic";
    static constexpr std::string_view loginTitle = "Start at log-in";
    static constexpr std::string_view loginNote
        = "Tarn then waits without a window, so that you hear of new mail before you have opened it.";

    // The login item outlives the pane.
    explicit GeneralPane(platform::LoginItem&);
    GeneralPane(GeneralPane const&) = delete;
    GeneralPane& operator=(GeneralPane const&) = delete;

    // Set by the widget that draws this.
    std::function<void()> onChange;

    // As it is to be, while the desktop has not answered.
    bool startsAtLogin() const;
    // Why the last change did not come true.
    std::optional<std::string> const& error() const { return m_error; }

    void setStartsAtLogin(bool);

private:
    platform::LoginItem& m_loginItem;
    std::optional<bool> m_wanted;
    std::optional<std::string> m_error;
    Lifetime m_lifetime;
};

}
