#pragma once

#include <filesystem>
#include <vector>

namespace tarn::gtk {

// The engine takes folders as text. One whose name is not UTF-8 it drops without a word, and uses the current folder,
// the same for everybody. Such a folder gets a second name here: a link, open to the user only, that ends with this.
class FolderAliases {
public:
    FolderAliases() = default;
    ~FolderAliases();
    FolderAliases(FolderAliases const&) = delete;
    FolderAliases& operator=(FolderAliases const&) = delete;

    // The folder itself where it is UTF-8; where it is not and no link can be made, too. It is made if it is missing
    // and needs a link.
    std::filesystem::path of(std::filesystem::path const& folder);

private:
    // Each in a folder of its own.
    std::vector<std::filesystem::path> m_links;
};

}
