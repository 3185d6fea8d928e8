#pragma once

#include <optional>

namespace tarn::gtk {

// Prints what a command line wants to be told, or what is wrong with it, and gives the exit status. Nothing when the
// program is to run. Call it before the toolkit starts: it needs no display.
std::optional<int> answerCommandLine(int argc, char const* const* argv);

}
