#pragma once

#include <cstddef>
#include <filesystem>

namespace tarn {

// Counts the starts in a row that ended, by a crash or from outside, before they had shown anything: a file that grows
// by a byte with each start and goes when a page has come. It is not flushed; what cannot be written is not counted.
class BlankStarts {
public:
    explicit BlankStarts(std::filesystem::path file = {})
        : m_file(std::move(file))
    {
    }

    std::size_t count() const;
    // One more, unless end() follows.
    void begin() const;
    // Something was shown, or the program ends as it should.
    void end() const;

private:
    std::filesystem::path m_file;
};

}
