#pragma once

namespace tarn::gtk {

// Forgets an address of the session bus that leads nowhere, as another user's shell leaves it behind: the engine ends
// the program over it. Without any address it goes on. Call it before there are threads.
void forgetUnreachableSessionBus();

}
