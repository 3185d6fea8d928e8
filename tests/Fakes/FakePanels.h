#pragma once

#include "Platform/Panels.h"

#include <algorithm>
#include <deque>
#include <utility>

namespace tarn::test {

// Records the dialogs; the test answers them as the user would.
class FakePanels final : public platform::Panels {
public:
    template <typename Panel, typename Answer> struct Shown {
        Panel panel;
        platform::SheetParent parent;
        Reply<Answer> reply;
    };

    void showAlert(
        platform::Alert const& alert, platform::SheetParent parent, Reply<platform::AlertResponse> reply) override
    {
        alerts.push_back({ alert, parent, std::move(reply) });
    }
    void showOpenPanel(platform::OpenPanel const& panel, platform::SheetParent parent,
        Reply<std::vector<std::filesystem::path>> reply) override
    {
        openPanels.push_back({ panel, parent, std::move(reply) });
    }
    void showSavePanel(platform::SavePanel const& panel, platform::SheetParent parent,
        Reply<std::optional<std::filesystem::path>> reply) override
    {
        savePanels.push_back({ panel, parent, std::move(reply) });
    }
    void dismiss(platform::SheetParent parent) override
    {
        dismiss(alerts, parent);
        dismiss(openPanels, parent);
        dismiss(savePanels, parent);
    }

    // The oldest of each kind is answered.
    void press(std::size_t button, std::string text = {}, bool checked = false)
    {
        answer(alerts, platform::AlertResponse { .button = button, .text = std::move(text), .checked = checked });
    }
    void choose(std::vector<std::filesystem::path> files) { answer(openPanels, std::move(files)); }
    void save(std::optional<std::filesystem::path> file) { answer(savePanels, std::move(file)); }

    std::deque<Shown<platform::Alert, platform::AlertResponse>> alerts;
    std::deque<Shown<platform::OpenPanel, std::vector<std::filesystem::path>>> openPanels;
    std::deque<Shown<platform::SavePanel, std::optional<std::filesystem::path>>> savePanels;

private:
    // Taken out first: a dropped reply may show the next one.
    template <typename Shown> static void dismiss(std::deque<Shown>& open, platform::SheetParent parent)
    {
        std::deque<Shown> dismissed;
        std::deque<Shown> kept;
        for (auto& shown : open)
            (shown.parent == parent ? dismissed : kept).push_back(std::move(shown));
        open = std::move(kept);
    }
    template <typename Panel, typename Answer> static void answer(std::deque<Shown<Panel, Answer>>& open, Answer answer)
    {
        auto shown = std::move(open.front());
        open.pop_front();
        std::move(shown.reply)(std::move(answer));
    }
};

}
