#pragma once

#include "App/Rendering.h"

#include <span>

namespace tarn::gtk {

// On a machine without a GPU the toolkit and the engine start four times as fast, and with half the memory, when they
// draw in software from the start instead of through a software GL. Safe rendering takes that choice on any machine,
// and keeps the engine from compositing and from GPUs altogether. To be called before either of them is touched; what
// the user has set in the environment stands.
void chooseRenderers(Rendering);

// The environment variables that chooseRenderers() set: not for programs that are started from here.
std::span<char const* const> chosenRendererVariables();

}
