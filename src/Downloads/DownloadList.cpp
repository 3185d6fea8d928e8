#include "Downloads/DownloadList.h"

#include <algorithm>
#include <utility>

namespace tarn {

namespace {

bool isRunning(DownloadItem const& item)
{
    return item.state == DownloadItem::State::running;
}

}

std::optional<double> DownloadItem::fraction() const
{
    if (progress.total < 1)
        return std::nullopt;
    return std::clamp(static_cast<double>(progress.completed) / static_cast<double>(progress.total), 0.0, 1.0);
}

std::size_t DownloadList::runningCount() const
{
    return static_cast<std::size_t>(std::ranges::count_if(m_items, isRunning));
}

std::optional<double> DownloadList::fraction() const
{
    // Floating, so that no server's idea of a size overflows.
    double completed = 0;
    double total = 0;
    for (auto const& item : m_items) {
        if (!isRunning(item))
            continue;
        completed += static_cast<double>(std::max<std::int64_t>(item.progress.completed, 0));
        total += static_cast<double>(std::max<std::int64_t>(item.progress.total, 0));
    }
    if (total < 1)
        return std::nullopt;
    return std::min(completed / total, 1.0);
}

void DownloadList::set(DownloadItem item)
{
    auto const place = std::ranges::find(m_items, item.id, &DownloadItem::id);
    if (place == m_items.end())
        m_items.insert(m_items.begin(), std::move(item));
    else
        *place = std::move(item);

    std::size_t finished = 0;
    std::erase_if(m_items, [&](auto const& one) { return !isRunning(one) && ++finished > mostFinished; });
    changed();
}

void DownloadList::remove(std::uint64_t id)
{
    if (std::erase_if(m_items, [&](auto const& item) { return item.id == id; }) > 0)
        changed();
}

void DownloadList::cancel(std::uint64_t id)
{
    if (find(id) && onCancel)
        onCancel(id);
}

void DownloadList::open(std::uint64_t id)
{
    if (auto const* const item = find(id); item && onOpen)
        onOpen(item->file);
}

void DownloadList::reveal(std::uint64_t id)
{
    if (auto const* const item = find(id); item && onReveal)
        onReveal(item->file);
}

void DownloadList::clearFinished()
{
    if (std::erase_if(m_items, [](auto const& item) { return !isRunning(item); }) > 0)
        changed();
}

DownloadItem const* DownloadList::find(std::uint64_t id) const
{
    auto const place = std::ranges::find(m_items, id, &DownloadItem::id);
    return place == m_items.end() ? nullptr : &*place;
}

void DownloadList::changed() const
{
    if (onChange)
        onChange();
}

}
