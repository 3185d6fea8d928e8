#pragma once

#include "MainWindow/WindowFactory.h"
#include "Platform/DockTile.h"
#include "Platform/LoginItem.h"
#include "Platform/NetworkMonitor.h"
#include "Platform/PowerMonitor.h"
#include "Platform/UserDefaults.h"
#include "Platform/WebView.h"
#include "Platform/Workspace.h"

#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace tarn::test {

class FakeWorkspace final : public platform::Workspace {
public:
    void open(Url const& url) override { opened.push_back(url.string()); }
    void openFile(std::filesystem::path const& file) override { openedFiles.push_back(file.string()); }
    void reveal(std::filesystem::path const& file) override { revealed.push_back(file.string()); }

    bool isDefaultHandler(std::string const& scheme) const override { return handled.contains(scheme); }
    void setDefaultHandler(std::string const& scheme, Reply<std::optional<std::string>> reply) override
    {
        if (!handlerError)
            handled.insert(scheme);
        std::move(reply)(handlerError);
    }

    std::set<std::string> handled;
    // Set: becoming the handler of anything fails for this reason.
    std::optional<std::string> handlerError;

    void openNotificationSettings() override { ++notificationSettings; }

    int notificationSettings { 0 };
    std::vector<std::string> opened;
    std::vector<std::string> openedFiles;
    std::vector<std::string> revealed;
};

class FakeDockTile final : public platform::DockTile {
public:
    bool isShown() const override { return shown; }
    void setOnShownChange(std::function<void()> callback) override { onShownChange = std::move(callback); }
    void setBadge(std::optional<std::int64_t> count) override { badge = count; }
    void setProgress(std::optional<platform::DockProgressBar> bar) override { progress.push_back(bar); }

    bool shown { true };
    std::function<void()> onShownChange;
    std::optional<std::int64_t> badge;
    // All that was shown, one after the other.
    std::vector<std::optional<platform::DockProgressBar>> progress;
};

class FakeUserDefaults final : public platform::UserDefaults {
public:
    std::optional<std::string> string(std::string const& key) const override
    {
        auto const value = values.find(key);
        return value == values.end() ? std::nullopt : std::optional(value->second);
    }
    void setString(std::string const& key, std::string const& value) override
    {
        values[key] = value;
        ++writes;
    }

    std::map<std::string, std::string> values;
    int writes { 0 };
};

struct WindowState {
    bool visible { false };
    platform::WebView* content { nullptr };
    platform::WebView* focused { nullptr };
    int presented { 0 };
    std::string title;
    std::function<void(platform::WindowFrame)> onFrameChange;
    MainWindowAppearance appearance;
};

class FakeWindow final : public platform::WebWindow {
public:
    explicit FakeWindow(WindowState& state)
        : m_state(state)
    {
    }

    void present() override
    {
        m_state.visible = true;
        ++m_state.presented;
    }
    bool isVisible() const override { return m_state.visible; }
    void setContent(platform::WebView* view) override { m_state.content = view; }
    void focus(platform::WebView& view) override { m_state.focused = &view; }
    void setTitle(std::string const& title) override { m_state.title = title; }
    void setOnFrameChange(std::function<void(platform::WindowFrame)> callback) override
    {
        m_state.onFrameChange = std::move(callback);
    }

private:
    WindowState& m_state;
};

class FakeNetworkMonitor final : public platform::NetworkMonitor {
public:
    bool isAvailable() const override { return available; }
    void setOnChange(std::function<void()> callback) override { onChange = std::move(callback); }

    void change(bool nowAvailable)
    {
        available = nowAvailable;
        if (onChange)
            onChange();
    }

    bool available { true };
    std::function<void()> onChange;
};

class FakeLoginItem final : public platform::LoginItem {
public:
    bool isEnabled() const override { return enabled; }
    void setEnabled(bool wanted, Reply<std::optional<std::string>> reply) override
    {
        if (!error)
            enabled = wanted;
        std::move(reply)(error);
    }

    bool enabled { false };
    // Set: nothing can be changed, for this reason.
    std::optional<std::string> error;
};

class FakePowerMonitor final : public platform::PowerMonitor {
public:
    void setOnResume(std::function<void()> callback) override { onResume = std::move(callback); }

    std::function<void()> onResume;
};

struct PopupState {
    bool visible { false };
    bool ended { false };
    int presented { 0 };
    int width { 0 };
    int height { 0 };
    std::string title;
    platform::PageOrigin origin;
    platform::WebView* content { nullptr };
    platform::MenuBar* menuBar { nullptr };
    std::function<void()> onClose;
};

class FakePopupWindow final : public platform::PopupWindow {
public:
    explicit FakePopupWindow(std::shared_ptr<PopupState> state)
        : m_state(std::move(state))
    {
    }
    ~FakePopupWindow() override { m_state->ended = true; }

    void present() override
    {
        m_state->visible = true;
        ++m_state->presented;
    }
    bool isVisible() const override { return m_state->visible; }
    void setContentSize(int width, int height) override
    {
        m_state->width = width;
        m_state->height = height;
    }
    void setTitle(std::string const& title) override { m_state->title = title; }
    void setOrigin(platform::PageOrigin const& origin) override { m_state->origin = origin; }
    void close() override
    {
        m_state->visible = false;
        if (auto const onClose = std::exchange(m_state->onClose, nullptr))
            onClose();
    }
    void setOnClose(std::function<void()> onClose) override { m_state->onClose = std::move(onClose); }

private:
    std::shared_ptr<PopupState> m_state;
};

class FakePlainWindow final : public platform::Window {
public:
    explicit FakePlainWindow(WindowState& state)
        : m_state(state)
    {
    }
    void present() override
    {
        m_state.visible = true;
        ++m_state.presented;
    }
    bool isVisible() const override { return m_state.visible; }

private:
    WindowState& m_state;
};

class FakeWindowFactory final : public WindowFactory {
public:
    std::unique_ptr<platform::WebWindow> makeMainWindow(MainWindowAppearance const& appearance, SidebarView&,
        DownloadList&, FindBarController&, platform::MenuBar&) override
    {
        main.appearance = appearance;
        return std::make_unique<FakeWindow>(main);
    }
    std::unique_ptr<platform::PopupWindow> makePopupWindow(platform::WebView& view, platform::MenuBar& menuBar) override
    {
        auto& state = popups.emplace_back(std::make_shared<PopupState>());
        state->content = &view;
        state->menuBar = &menuBar;
        return std::make_unique<FakePopupWindow>(state);
    }

    std::unique_ptr<platform::Window> makeSettingsWindow(SettingsWindowController&) override
    {
        ++settingsMade;
        return std::make_unique<FakePlainWindow>(settings);
    }

    WindowState main;
    WindowState settings;
    int settingsMade { 0 };
    // In the order they were made, the ended ones too.
    std::vector<std::shared_ptr<PopupState>> popups;
};

}
