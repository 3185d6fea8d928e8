#pragma once

namespace tarn {

// How one start of the program draws.
enum class Rendering {
    // By what the computer has.
    detected,
    // All in software, for graphics drivers that do not work.
    safe,
};

}
