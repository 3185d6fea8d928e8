#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace tarn {

// The whole file as bytes; nothing when it cannot be read.
std::optional<std::string> readFile(std::filesystem::path const&);

// Replaces a file so that a crash or a power cut leaves the old content or the new one, never a part: written aside,
// flushed, renamed over it, folder flushed. Readable and writable by its owner only.
// Throws std::filesystem::filesystem_error; the old file is then untouched.
void replaceFileDurably(std::filesystem::path const&, std::string_view content);

}
