#pragma once

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <set>
#include <string>
#include <system_error>

namespace tarn {

// A folder of a test's own, gone with everything in it at the end.
class TemporaryFolder {
public:
    TemporaryFolder()
    {
        auto name = (std::filesystem::temp_directory_path() / "tarn-test-XXXXXX").native();
        if (!mkdtemp(name.data()))
            throw std::system_error(errno, std::generic_category(), name);
        m_path = name;
    }
    ~TemporaryFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    TemporaryFolder(TemporaryFolder const&) = delete;
    TemporaryFolder& operator=(TemporaryFolder const&) = delete;

    std::filesystem::path const& path() const { return m_path; }
    std::filesystem::path operator/(std::filesystem::path const& name) const { return m_path / name; }

private:
    std::filesystem::path m_path;
};

inline std::set<std::string> fileNames(std::filesystem::path const& folder)
{
    std::set<std::string> names;
    for (auto const& entry : std::filesystem::directory_iterator(folder))
        names.insert(entry.path().filename().native());
    return names;
}

}
