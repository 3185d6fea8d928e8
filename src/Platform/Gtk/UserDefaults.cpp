#include "Platform/Gtk/UserDefaults.h"

#include "Support/DurableFile.h"

#include <glibmm/keyfile.h>

namespace tarn::gtk {

namespace {
constexpr char const* group = "Tarn";
}

UserDefaults::UserDefaults(std::filesystem::path file, Log log)
    : m_file(std::move(file))
    , m_log(std::move(log))
{
    auto const content = readFile(m_file);
    if (!content)
        return;
    try {
        auto const keyFile = Glib::KeyFile::create();
        keyFile->load_from_data(*content);
        if (!keyFile->has_group(group))
            return;
        for (auto const& key : keyFile->get_keys(group))
            m_values.insert_or_assign(key, keyFile->get_string(group, key));
    } catch (Glib::Error const& error) {
        m_log("[Settings] could not read " + m_file.filename().string() + ": " + std::string(error.what()));
    }
}

std::optional<std::string> UserDefaults::string(std::string const& key) const
{
    auto const value = m_values.find(key);
    return value == m_values.end() ? std::nullopt : std::optional(value->second);
}

void UserDefaults::setString(std::string const& key, std::string const& value)
{
    m_values.insert_or_assign(key, value);
    save();
}

void UserDefaults::save() const
{
    auto const keyFile = Glib::KeyFile::create();
    for (auto const& [key, value] : m_values)
        keyFile->set_string(group, key, value);
    try {
        createPrivateFolder(m_file.parent_path());
        replaceFileDurably(m_file, keyFile->to_data().raw());
    } catch (std::exception const& error) {
        m_log(std::string("[Settings] could not save: ") + error.what());
    }
}

}
