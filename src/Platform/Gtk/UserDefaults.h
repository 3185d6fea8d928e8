#pragma once

#include "Platform/UserDefaults.h"
#include "Support/Log.h"

#include <filesystem>
#include <map>

namespace tarn::gtk {

// One key file, read at once and written at every change.
class UserDefaults final : public platform::UserDefaults {
public:
    UserDefaults(std::filesystem::path file, Log);

    std::optional<std::string> string(std::string const& key) const override;
    void setString(std::string const& key, std::string const& value) override;

private:
    void save() const;

    std::filesystem::path m_file;
    Log m_log;
    std::map<std::string, std::string> m_values;
};

}
