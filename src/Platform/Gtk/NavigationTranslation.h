#pragma once

#include "Platform/NavigationDelegate.h"

#include <webkit/webkit.h>

// The engine's words for navigation in the port's, and back.
namespace tarn::gtk {

platform::NavigationAction translate(WebKitNavigationAction*);
platform::NavigationResponse translate(WebKitResponsePolicyDecision*);
platform::LoadFailure::Kind kindOf(GError const*);
void carryOut(platform::NavigationPolicy, WebKitPolicyDecision*);

}
