#include "App/CommandLine.h"

#include "App/NewItem.h"

#include <gmock/gmock.h>

namespace tarn {
namespace {

using Arguments = std::vector<std::string>;

TEST(CommandLine, MeansWhatItSays)
{
    using Window = LaunchRequest::Window;
    struct Row {
        Arguments arguments;
        CommandLine::Meaning meaning;
    };
    Row const rows[] {
        { {}, LaunchRequest {} },
        { { "--hidden" }, LaunchRequest { .window = Window::leaveHidden } },
        { { "--safe-rendering" }, LaunchRequest { .rendering = Rendering::safe } },
        { { "mailto:a%40b@c?x=%20#f", "MAILTO:\xff" },
            LaunchRequest { .urls = { "mailto:a%40b@c?x=%20#f", "MAILTO:\xff" } } },
        { { "--profile", "--hidden", "mailto:a" }, LaunchRequest { .profile = "--hidden", .urls = { "mailto:a" } } },
        { { "--profile=At work", "--new=email" }, LaunchRequest { .profile = "At work", .newItem = "email" } },
        { { "--", "--version" }, LaunchRequest { .urls = { "--version" } } },
        { { "mailto:a", "-h" }, CommandLine::ShowHelp {} },
        { { "--version", "--nonsense" }, CommandLine::ShowVersion {} },
        { { "--profile" }, CommandLine::Refusal { "--profile needs the name of a profile" } },
        { { "--profile=" }, CommandLine::Refusal { "--profile needs the name of a profile" } },
        { { "--new", "mailto:a" }, CommandLine::Refusal { "--new needs one of the words that --help shows" } },
        { { "--profiles=x" }, CommandLine::Refusal { "there is no option --profiles=x" } },
    };
    for (auto const& row : rows)
        EXPECT_TRUE(CommandLine::parse(row.arguments) == row.meaning) << testing::PrintToString(row.arguments);
    for (auto const name : NewItem::names) {
        EXPECT_NE(CommandLine::help().find(name), std::string::npos);
        EXPECT_EQ(NewItem::address(name)->scheme(), "https") << name;
    }
}

}
}
