#pragma once

#include <optional>
#include <string>

namespace tarn::platform {

// Small settings of this user on this computer, by key. They survive the process.
class UserDefaults {
public:
    virtual ~UserDefaults() = default;

    virtual std::optional<std::string> string(std::string const& key) const = 0;
    virtual void setString(std::string const& key, std::string const& value) = 0;
};

}
