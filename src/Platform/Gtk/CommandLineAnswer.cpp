#include "Platform/Gtk/CommandLineAnswer.h"

#include "App/CommandLine.h"

#include <webkit/webkit.h>

#include <cstdlib>
#include <iostream>

namespace tarn::gtk {

std::optional<int> answerCommandLine(int argc, char const* const* argv)
{
    auto const meaning = CommandLine::parse({ argv + (argc > 0 ? 1 : 0), argv + argc });
    if (std::holds_alternative<CommandLine::ShowHelp>(meaning)) {
        std::cout << CommandLine::help();
    } else if (std::holds_alternative<CommandLine::ShowVersion>(meaning)) {
        std::cout << "Tarn " TARN_VERSION " (WebKitGTK " << webkit_get_major_version() << '.'
                  << webkit_get_minor_version() << '.' << webkit_get_micro_version() << ")\n";
    } else if (auto const* const refusal = std::get_if<CommandLine::Refusal>(&meaning)) {
        std::cerr << "tarn: " << refusal->reason << "; try tarn --help\n";
        return 2;
    } else {
        return std::nullopt;
    }
    return EXIT_SUCCESS;
}

}
