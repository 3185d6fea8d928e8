#pragma once

#include "Support/Uuid.h"

namespace tarn::platform {

// Cookies, storage and caches of one profile. Two views share a sign-in exactly when they share a store.
class WebsiteDataStore {
public:
    virtual ~WebsiteDataStore() = default;

    virtual Uuid identifier() const = 0;
};

}
