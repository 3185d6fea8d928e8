#include "Platform/Gtk/FolderAliases.h"

#include "Support/Unicode.h"

#include <glib.h>

#include <cstdlib>

namespace tarn::gtk {

namespace {

// Empty when it cannot be made.
std::filesystem::path privateFolder()
{
    auto const* const runtime = std::getenv("XDG_RUNTIME_DIR");
    for (auto const* const parent : { runtime ? runtime : "", "/tmp" }) {
        std::filesystem::path const path = parent;
        if (!path.is_absolute() || !isUtf8(path.string()))
            continue;
        auto made = (path / "tarn-XXXXXX").string();
        if (g_mkdtemp(made.data()))
            return made;
    }
    return {};
}

}

FolderAliases::~FolderAliases()
{
    for (auto const& link : m_links) {
        std::error_code ignored;
        std::filesystem::remove(link, ignored);
        std::filesystem::remove(link.parent_path(), ignored);
    }
}

std::filesystem::path FolderAliases::of(std::filesystem::path const& folder)
{
    if (isUtf8(folder.string()) || g_mkdir_with_parents(folder.c_str(), 0700) != 0)
        return folder;
    auto const parent = privateFolder();
    if (parent.empty())
        return folder;
    auto link = parent / "folder";
    std::error_code error;
    std::filesystem::create_directory_symlink(folder, link, error);
    if (error) {
        std::filesystem::remove(parent, error);
        return folder;
    }
    return m_links.emplace_back(std::move(link));
}

}
