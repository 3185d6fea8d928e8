#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace tarn {

// The whole regular file as bytes; nothing when it cannot be read or holds more than 16 MiB.
std::optional<std::string> readFile(std::filesystem::path const&);

// Replaces a file so that a crash or a power cut leaves the old content or the new one, never a part: written aside,
// flushed, renamed over it, folder flushed. Readable and writable by its owner only. Of a symbolic link, what it points
// to is replaced; anything but a regular file is left alone.
// Throws std::filesystem::filesystem_error; the old file is then untouched, unless the very last step failed, the flush
// of the folder.
void replaceFileDurably(std::filesystem::path const&, std::string_view content);

// Makes the folder and the missing ones above it, open to their owner only; a folder that exists stays as it is.
// Throws std::filesystem::filesystem_error.
void createPrivateFolder(std::filesystem::path const&);

}
