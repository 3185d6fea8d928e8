#pragma once

#include "App/LaunchRequest.h"

#include <glibmm/variant.h>

// A launch request on its way to the instance that runs. Links travel as bytes: whatever GIO takes for a file name it
// rewrites, and with it the address of a message.
namespace tarn::gtk::LaunchMessage {

Glib::VariantType const& type();
Glib::VariantBase pack(LaunchRequest const&);
// Of a variant of that type.
LaunchRequest unpack(Glib::VariantBase);

}
