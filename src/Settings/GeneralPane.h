#pragma once

#include "App/SafeRendering.h"
#include "Platform/LoginItem.h"
#include "Support/Lifetime.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace tarn {

// The settings' page about the application as a whole: whether it starts when the user logs in, and how it draws.
class GeneralPane {
public:
    static constexpr std::string_view title = "General";
    static constexpr std::string_view iconName = "tarn-settings-symbolic";
    static constexpr std::string_view loginTitle = "Start at log-in";
    static constexpr std::string_view loginNote
        = "Tarn then waits without a window, so that you hear of new mail before you have opened it.";
    static constexpr std::string_view safeRenderingTitle = "Safe rendering";
    static constexpr std::string_view safeRenderingNote
        = "Everything is drawn in software, for graphics drivers that leave windows blank. It is slower, and takes "
          "effect when Tarn is started again.";

    // Both outlive the pane.
    GeneralPane(platform::LoginItem&, SafeRendering&);
    GeneralPane(GeneralPane const&) = delete;
    GeneralPane& operator=(GeneralPane const&) = delete;

    // Set by the widget that draws this.
    std::function<void()> onChange;

    // As it is to be, while the desktop has not answered.
    bool startsAtLogin() const;
    // Why the last change did not come true.
    std::optional<std::string> const& error() const { return m_error; }

    void setStartsAtLogin(bool);

    bool rendersSafely() const { return m_safeRendering.isKept(); }
    void setRendersSafely(bool safe) { m_safeRendering.setKept(safe); }

private:
    platform::LoginItem& m_loginItem;
    SafeRendering& m_safeRendering;
    std::optional<bool> m_wanted;
    std::optional<std::string> m_error;
    Lifetime m_lifetime;
};

}
