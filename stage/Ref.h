#pragma once

#include "Platform/Gtk/Ref.h"

namespace tarn::stage {

using gtk::Ref;

}
