#include "Platform/Gtk/FolderAliases.h"

#include "Support/Unicode.h"

#include <glib/gstdio.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

namespace tarn::gtk {

namespace {

constexpr std::size_t digits = 16;

// Somebody else may have made it first, where everybody may.
bool isOurs(std::filesystem::path const& folder)
{
    struct stat status { };
    return lstat(folder.c_str(), &status) == 0 && S_ISDIR(status.st_mode) && status.st_uid == geteuid()
        && (status.st_mode & (S_IRWXG | S_IRWXO)) == 0;
}

// Where the folder's link lies. Empty when it cannot be made.
std::filesystem::path privateFolder(std::filesystem::path const& folder)
{
    auto* const digest = g_compute_checksum_for_string(G_CHECKSUM_SHA256, folder.c_str(), -1);
    auto const name = "tarn-" + std::string(digest, digits);
    g_free(digest);
    auto const* const runtime = std::getenv("XDG_RUNTIME_DIR");
    for (auto const* const parent : { runtime ? runtime : "", "/tmp" }) {
        std::filesystem::path const path = parent;
        if (!path.is_absolute() || !isUtf8(path.string()))
            continue;
        auto made = path / name;
        g_mkdir(made.c_str(), S_IRWXU);
        if (isOurs(made))
            return made;
    }
    return {};
}

}

std::filesystem::path FolderAliases::of(std::filesystem::path const& folder)
{
    if (isUtf8(folder.string()) || g_mkdir_with_parents(folder.c_str(), S_IRWXU) != 0)
        return folder;
    auto const parent = privateFolder(folder);
    if (parent.empty())
        return folder;
    auto link = parent / "folder";
    std::error_code error;
    if (std::filesystem::read_symlink(link, error) == folder)
        return link;
    std::filesystem::remove_all(link, error);
    std::filesystem::create_directory_symlink(folder, link, error);
    return error ? folder : link;
}

}
