#include "Platform/Gtk/RemovedFolders.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace tarn::gtk {

namespace {

// The folder may come back between its removal and the making of the file.
constexpr int attempts = 100;

std::optional<std::string> replaceByFile(std::filesystem::path const& folder)
{
    for (int attempt = 0; attempt < attempts; ++attempt) {
        std::error_code error;
        std::filesystem::remove_all(folder, error);
        // A file that is put in while its folder is being emptied: once more.
        if (error && error != std::errc::directory_not_empty)
            return error.message();
        int const file = open(folder.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR);
        if (file >= 0) {
            close(file);
            return std::nullopt;
        }
        // Without its parent the folder cannot come back either.
        if (errno == ENOENT)
            return std::nullopt;
        if (errno != EEXIST)
            return std::generic_category().message(errno);
    }
    return "the web engine keeps writing website data";
}

}

std::optional<std::string> RemovedFolders::remove(WebsiteFolders const& folders)
{
    auto const data = replaceByFile(folders.data);
    auto const cache = replaceByFile(folders.cache);
    return data ? data : cache;
}

RemovedFolders::RemovedFolders(WebsiteFolders folders)
    : m_folders(std::move(folders))
{
}

RemovedFolders::~RemovedFolders()
{
    for (auto const& folder : { m_folders.data, m_folders.cache })
        unlink(folder.c_str());
}

}
