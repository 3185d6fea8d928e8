#pragma once

#include <functional>
#include <string>

namespace tarn {

// One line for the system log, without a line break; it starts with a tag such as "[Profiles] ".
using Log = std::function<void(std::string const&)>;

// Writes to the system log (the journal, or standard error).
void logToSystem(std::string const&);

}
