#pragma once

#include <cstddef>

namespace tarn::test {

// How often this thread has taken memory with `new` so far.
std::size_t allocations();

}
