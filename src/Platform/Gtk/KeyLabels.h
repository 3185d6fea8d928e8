#pragma once

#include "Platform/Menu.h"

#include <string>
#include <vector>

namespace tarn::gtk {

// The toolkit's accelerators of a key, the one to be shown first.
std::vector<std::string> accelerators(platform::KeyEquivalent const&);

// Whether pages and text fields have the key of this command themselves. It is shown, but no accelerator takes it away.
bool isTypedIntoPages(platform::Command);

// The key as this desktop writes it: "Ctrl+1".
std::string keyLabel(platform::KeyEquivalent const&);

}
