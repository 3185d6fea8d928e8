#include "Platform/Gtk/Spelling.h"

#include <chrono>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tarn::gtk {

namespace {

// Reading a dictionary takes 35 ms.
constexpr std::chrono::seconds startDelay { 2 };

// As dictionaries are called: "pt_BR". A language without its country comes last and only by itself.
std::vector<std::string> dictionaries()
{
    std::vector<std::string> names;
    for (auto const* const* name = g_get_language_names(); *name; ++name) {
        std::string_view const tag = *name;
        if (tag.find_first_of(".@") == tag.npos && tag.find('_') != tag.npos)
            names.emplace_back(tag);
    }
    if (!names.empty())
        return names;
    std::string const language = *g_get_language_names();
    auto const plain = language.substr(0, language.find_first_of(".@"));
    return { plain == "C" || plain == "POSIX" ? "en_US" : plain };
}

}

Spelling::Spelling(WebKitWebContext* context)
    : m_context(share(context))
    , m_start(m_runLoop.after(startDelay, [this] { start(); }))
{
}

void Spelling::start()
{
    if (!std::exchange(m_start, nullptr))
        return;
    auto const names = dictionaries();
    std::vector<char const*> pointers;
    pointers.reserve(names.size() + 1);
    for (auto const& name : names)
        pointers.push_back(name.c_str());
    pointers.push_back(nullptr);
    webkit_web_context_set_spell_checking_languages(m_context.get(), pointers.data());
    webkit_web_context_set_spell_checking_enabled(m_context.get(), isAvailable());
}

bool Spelling::isAvailable() const
{
    if (m_start)
        return true;
    auto const* const* const languages = webkit_web_context_get_spell_checking_languages(m_context.get());
    return languages && *languages;
}

bool Spelling::isOn() const
{
    return m_start || webkit_web_context_get_spell_checking_enabled(m_context.get());
}

void Spelling::toggle()
{
    start();
    webkit_web_context_set_spell_checking_enabled(m_context.get(), !isOn());
}

}
