#include "Bridge/BridgeScripts.h"

#include "scripts/promoDismissalScript.h"

namespace tarn::BridgeScripts {

std::string_view promoDismissal()
{
    return promoDismissalScript;
}

}
