#pragma once

#include "Support/Reply.h"

#include <optional>
#include <string>

namespace tarn::platform {

// The start of this application, without a window, when the user logs in.
class LoginItem {
public:
    virtual ~LoginItem() = default;

    virtual bool isEnabled() const = 0;
    // The reply, on a later turn, is the reason why it could not be done, for users; nothing when it is done. The
    // desktop may ask the user first. A later call gives up an earlier one that waits for its answer.
    virtual void setEnabled(bool, Reply<std::optional<std::string>>) = 0;
};

}
