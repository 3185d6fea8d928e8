#pragma once

namespace tarn::gtk {

// The toolkit reads its own style sheet when it starts (10 ms), only to have it replaced by libadwaita's. Unless the
// user asked for a theme, it is told to begin with the empty one that libadwaita leaves in its place.

// Changes the environment: before the first thread.
void beginWithEmptyTheme();
// After the toolkit's start, before libadwaita's, which would take the theme for the user's choice.
void endEmptyTheme();

}
