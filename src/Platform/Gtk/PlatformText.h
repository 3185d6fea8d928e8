#pragma once

#include <string>
#include <string_view>

namespace tarn::gtk {

// A text of the application in the words of this desktop.
std::string platformText(std::string_view);

}
