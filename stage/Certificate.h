#pragma once

#include "Ref.h"

#include <gio/gio.h>

namespace tarn::stage {

// A fresh self-signed certificate with its private key, good for 30 days; nothing is written to disk.
// Throws std::runtime_error.
Ref<GTlsCertificate> makeCertificate();

}
