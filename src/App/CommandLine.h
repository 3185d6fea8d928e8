#pragma once

#include "App/LaunchRequest.h"

#include <string>
#include <variant>
#include <vector>

// The arguments of the program.
namespace tarn::CommandLine {

struct ShowHelp {
    friend bool operator==(ShowHelp, ShowHelp) = default;
};
struct ShowVersion {
    friend bool operator==(ShowVersion, ShowVersion) = default;
};
// One line for the user.
struct Refusal {
    std::string reason;
    friend bool operator==(Refusal const&, Refusal const&) = default;
};

using Meaning = std::variant<LaunchRequest, ShowHelp, ShowVersion, Refusal>;

// Of the arguments after the program's name. Whatever is no option is a URL.
Meaning parse(std::vector<std::string> const& arguments);

// What --help prints, with a line break at its end.
std::string help();

}
