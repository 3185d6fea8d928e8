#pragma once

#include "Platform/Download.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace tarn {

struct DownloadItem {
    enum class State { running, finished };

    std::uint64_t id { 0 };
    State state { State::running };
    std::filesystem::path file;
    platform::DownloadProgress progress {};

    // From 0 to 1; nothing where the size is not known.
    std::optional<double> fraction() const;
};

// What the title bar shows of the downloads: those that run, and the last ones that have finished.
class DownloadList {
public:
    static constexpr std::size_t mostFinished = 10;

    // Set by the widget that shows it.
    std::function<void()> onChange;
    // Set by the owner of the downloads.
    std::function<void(std::uint64_t id)> onCancel;
    std::function<void(std::filesystem::path const&)> onOpen;
    std::function<void(std::filesystem::path const&)> onReveal;

    // Newest first.
    std::vector<DownloadItem> const& items() const { return m_items; }
    std::size_t runningCount() const;
    // Of all that run as one: the sum of what is known. Nothing when no size is known.
    std::optional<double> fraction() const;

    // Adds the item, or puts it in the place of the one with its identifier.
    void set(DownloadItem);
    void remove(std::uint64_t id);

    // What the user does there.
    void cancel(std::uint64_t id);
    void open(std::uint64_t id);
    void reveal(std::uint64_t id);
    void clearFinished();

private:
    DownloadItem const* find(std::uint64_t id) const;
    void changed() const;

    std::vector<DownloadItem> m_items;
};

}
