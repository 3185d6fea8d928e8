#include "Downloads/SafeFileName.h"
#include "Fuzz.h"
#include "Support/Unicode.h"

int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    using namespace tarn;
    auto const name = safeFileName(fuzz::text(data, size));
    fuzz::require(!name.empty() && name.size() <= 255, "a file system takes it");
    fuzz::require(isUtf8(name) && name.find_first_of("/\\") == name.npos, "it is a bare name");
    fuzz::require(name.front() != '.' && name.front() != ' ', "it does not hide");
    fuzz::require(name.back() != '.' && name.back() != ' ', "its extension is seen");
    for (std::size_t position = 0; position < name.size();) {
        auto const character = nextCharacter(name, position);
        fuzz::require(character == ' ' || (isVisible(character) && !isWhitespace(character)), "all of it is seen");
    }
    fuzz::require(safeFileName(name) == name, "what is safe stays");
    return 0;
}
