#pragma once

#include "App/Rendering.h"

#include <span>

namespace tarn::gtk {

// On a machine without a GPU the toolkit and the engine start four times as fast, and with half the memory, when they
// draw in software from the start instead of through a software GL. Safe rendering takes that choice on any machine,
// and keeps the engine from compositing and from GPUs altogether. To be called before either of them is touched; what
// the user has set in the environment stands.
void chooseRenderers(Rendering);

// Where it chose software: pages get scroll bars that stay, beside the page. Those that fade in and out over it have
// the whole page drawn anew for three seconds, at half a processor in this process alone. After the toolkit's start,
// before the first page.
void keepScrollBarsStill();

// The environment variables that chooseRenderers() set: not for programs that are started from here.
std::span<char const* const> chosenRendererVariables();

}
