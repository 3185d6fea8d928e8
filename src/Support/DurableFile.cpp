#include "Support/DurableFile.h"

#include <fcntl.h>
#include <glib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cinttypes>
#include <cstdint>
#include <cstdio>
#include <random>
#include <system_error>

namespace tarn {

namespace {

constexpr std::size_t largestFile = 16 << 20;

[[noreturn]] void fail(char const* what, std::filesystem::path const& path, int error = errno)
{
    throw std::filesystem::filesystem_error(what, path, std::error_code(error, std::generic_category()));
}

// Repeats a call that a signal interrupted.
template <typename Call> auto uninterrupted(Call call)
{
    auto result = call();
    while (result < 0 && errno == EINTR)
        result = call();
    return result;
}

class Descriptor {
public:
    explicit Descriptor(int descriptor)
        : m_descriptor(descriptor)
    {
    }
    ~Descriptor()
    {
        if (isOpen())
            close(m_descriptor);
    }
    Descriptor(Descriptor const&) = delete;
    Descriptor& operator=(Descriptor const&) = delete;

    bool isOpen() const { return m_descriptor >= 0; }
    int get() const { return m_descriptor; }

private:
    int m_descriptor;
};

// A new file in a folder, gone again unless it takes another's place.
class AsideFile {
public:
    // The folder is borrowed and outlives this object.
    explicit AsideFile(Descriptor const& folder)
        : m_folder(folder)
        , m_file(create())
    {
    }
    ~AsideFile()
    {
        if (m_file.isOpen() && !m_isInPlace)
            unlinkat(m_folder.get(), m_name, 0);
    }
    AsideFile(AsideFile const&) = delete;
    AsideFile& operator=(AsideFile const&) = delete;

    bool isOpen() const { return m_file.isOpen(); }

    bool write(std::string_view content)
    {
        while (!content.empty()) {
            auto const written = uninterrupted([&] { return ::write(m_file.get(), content.data(), content.size()); });
            if (written < 0)
                return false;
            content.remove_prefix(static_cast<std::size_t>(written));
        }
        // The permissions again, because the process's mask may have taken some away.
        return fchmod(m_file.get(), S_IRUSR | S_IWUSR) == 0 && uninterrupted([&] { return fsync(m_file.get()); }) == 0;
    }

    bool moveOver(std::string const& name)
    {
        m_isInPlace = renameat(m_folder.get(), m_name, m_folder.get(), name.c_str()) == 0;
        return m_isInPlace;
    }

private:
    int create()
    {
        std::random_device random;
        for (int attempt = 0; attempt < 100; ++attempt) {
            auto const number = std::uint64_t { random() } << 32 | random();
            (void)std::snprintf(m_name, sizeof m_name, ".%016" PRIx64 ".tmp", number);
            auto const flags = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
            int const file = uninterrupted([&] { return openat(m_folder.get(), m_name, flags, S_IRUSR | S_IWUSR); });
            if (file >= 0 || errno != EEXIST)
                return file;
        }
        return -1;
    }

    Descriptor const& m_folder;
    // Not made from the name of the file that is replaced: that one may be as long as names can be.
    char m_name[32] {};
    Descriptor m_file;
    bool m_isInPlace { false };
};

std::filesystem::path followLinks(std::filesystem::path path)
{
    std::error_code none;
    for (int links = 0; links < 40; ++links) {
        if (!std::filesystem::is_symlink(std::filesystem::symlink_status(path, none)))
            return path;
        path = path.parent_path() / std::filesystem::read_symlink(path);
    }
    fail("cannot follow", path, ELOOP);
}

}

std::optional<std::string> readFile(std::filesystem::path const& path)
{
    // Non-blocking, so that a pipe in the file's place cannot hold us up.
    Descriptor const file(
        uninterrupted([&] { return open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC); }));
    struct stat status;
    if (!file.isOpen() || fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode))
        return std::nullopt;

    std::string content;
    for (std::size_t size = 0; size <= largestFile;) {
        content.resize(size + 64 * 1024);
        auto const count
            = uninterrupted([&] { return read(file.get(), content.data() + size, content.size() - size); });
        if (count < 0)
            return std::nullopt;
        size += static_cast<std::size_t>(count);
        if (count == 0) {
            content.resize(size);
            return content;
        }
    }
    return std::nullopt;
}

void replaceFileDurably(std::filesystem::path const& link, std::string_view content)
{
    auto const path = followLinks(link);
    std::error_code none;
    auto const status = std::filesystem::symlink_status(path, none);
    if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status))
        fail("cannot replace", path, std::filesystem::is_directory(status) ? EISDIR : EINVAL);

    auto const parent = path.has_parent_path() ? path.parent_path() : std::filesystem::path(".");
    Descriptor const folder(uninterrupted([&] { return open(parent.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
    if (!folder.isOpen())
        fail("cannot open", parent);

    AsideFile file(folder);
    if (!file.isOpen())
        fail("cannot create a file in", parent);
    if (!file.write(content))
        fail("cannot write", path);
    if (!file.moveOver(path.filename().native()))
        fail("cannot replace", path);
    // Some file systems have nothing to flush for a folder, and say so.
    if (uninterrupted([&] { return fsync(folder.get()); }) != 0 && errno != EINVAL && errno != ENOTSUP)
        fail("cannot flush", parent);
}

void createPrivateFolder(std::filesystem::path const& path)
{
    if (g_mkdir_with_parents(path.c_str(), S_IRWXU) != 0)
        fail("cannot create", path);
}

}
