#include "Downloads/SafeFileName.h"

#include <gtest/gtest.h>

#include <string>

namespace tarn {
namespace {

using namespace std::string_literals;

TEST(SafeFileNameTest, LeavesOnlyABareName)
{
    struct Case {
        std::string suggested;
        std::string name;
    };
    for (auto const& [suggested, name] : {
             Case { "report.pdf", "report.pdf" },
             Case { "\xC3\x9C"
                    "bersicht \xE2\x80\x93 \xE8\xA1\xA8.xlsx",
                 "\xC3\x9C"
                 "bersicht \xE2\x80\x93 \xE8\xA1\xA8.xlsx" },
             Case { "/etc/passwd", "passwd" },
             Case { "..\\..\\run.exe", "run.exe" },
             Case { "folder/", "download" },
             Case { "", "download" },
             Case { " . .. ", "download" },
             Case { ".bashrc", "bashrc" },
             Case { "..", "download" },
             Case { "a\nb\tc\0d"s, "a b cd" },
             Case { "name.txt. . ", "name.txt" },
             // Text that is turned round: the eye reads "exe.pdf" at the end.
             Case { "invoice\xE2\x80\xAE"
                    "fdp.exe",
                 "invoicefdp.exe" },
             Case { "\xEF\xBB\xBF\xE2\x81\xA6x\xE2\x81\xA9.txt", "x.txt" },
             Case { "\xE2\x80\x8B.hidden", "hidden" },
             Case { "bad\xFF\xC3.txt", "bad.txt" },
             Case { std::string(300, 'n') + ".tar", std::string(251, 'n') + ".tar" },
             Case { "a." + std::string(300, 'x'), "a." + std::string(253, 'x') },
             Case { std::string(200, 'n') + std::string(60, '.') + "x", std::string(200, 'n') + ".x" },
         }) {
        EXPECT_EQ(safeFileName(suggested), name);
    }

    // Three bytes each, and 251 is no multiple of that: none is cut in two.
    std::string wide;
    for (int count = 0; count < 100; ++count)
        wide += "\xE8\xA1\xA8";
    EXPECT_EQ(safeFileName(wide + ".pdf"), wide.substr(0, 249) + ".pdf");
}

}
}
