#pragma once

#include "MainWindow/WindowFactory.h"
#include "Platform/DockTile.h"
#include "Platform/UserDefaults.h"
#include "Platform/WebView.h"
#include "Platform/Workspace.h"

#include <map>
#include <string>
#include <vector>

namespace tarn::test {

class FakeWorkspace final : public platform::Workspace {
public:
    void open(Url const& url) override { opened.push_back(url.string()); }
    void reveal(std::filesystem::path const& file) override { revealed.push_back(file.string()); }

    std::vector<std::string> opened;
    std::vector<std::string> revealed;
};

class FakeDockTile final : public platform::DockTile {
public:
    void setBadge(std::optional<std::int64_t> count) override { badge = count; }

    std::optional<std::int64_t> badge;
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
    void setOnFrameChange(std::function<void(platform::WindowFrame)> callback) override
    {
        m_state.onFrameChange = std::move(callback);
    }

private:
    WindowState& m_state;
};

class FakeWindowFactory final : public WindowFactory {
public:
    std::unique_ptr<platform::WebWindow> makeMainWindow(
        MainWindowAppearance const& appearance, SidebarView&, platform::MenuBar&) override
    {
        main.appearance = appearance;
        return std::make_unique<FakeWindow>(main);
    }

    WindowState main;
};

}
