#pragma once

#include <filesystem>

namespace tarn::gtk {

// The engine takes folders as text. One whose name is not UTF-8 it drops without a word, and uses the current folder,
// the same for everybody. Such a folder gets a second name here: a link, open to the user only. It stays, and is the
// same the next time: the engine's processes go on writing after the program has ended, and where the link was gone
// they would make a folder of that name, with what pages have left.
class FolderAliases {
public:
    // The folder itself where it is UTF-8; where it is not and no link can be made, too. It is made if it is missing
    // and needs a link.
    static std::filesystem::path of(std::filesystem::path const& folder);
};

}
