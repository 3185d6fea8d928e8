#pragma once

#include "Platform/Gtk/Application.h"

namespace tarn::gtk {

// What comes before the toolkit and the engine: names, and how this start draws, which it notes in the options. To be
// called once, while there is one thread.
void prepareStart(Application::Options&, int argc, char const* const* argv);

// To its end; the result is the exit status. Where it is to start again, the program begins anew in the same process,
// as the sandboxes and images that end with their first process want it.
int runApplication(Application::Options, int argc, char** argv);

}
