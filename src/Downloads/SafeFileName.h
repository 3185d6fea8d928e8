#pragma once

#include <string>
#include <string_view>

namespace tarn {

// Makes a bare file name of what a server or a page suggests: without folders, without characters that cannot be seen
// or that turn the text round (so that the extension is what it seems), not hidden, not longer than a file name can be.
// "download" where nothing is left.
std::string safeFileName(std::string_view suggested);

}
