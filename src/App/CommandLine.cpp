#include "App/CommandLine.h"

#include "App/NewItem.h"

#include <optional>
#include <string_view>

namespace tarn::CommandLine {

namespace {

// The value of "--name=value", or of "--name" followed by it.
class Options {
public:
    explicit Options(std::vector<std::string> const& arguments)
        : m_arguments(arguments)
    {
    }

    bool atEnd() const { return m_next == m_arguments.size(); }
    std::string const& next() { return m_arguments[m_next++]; }

    // Nothing when it is another option; the inner nothing is a missing value.
    std::optional<std::optional<std::string>> value(std::string const& argument, std::string_view name)
    {
        if (argument == name)
            return atEnd() ? std::optional<std::string>() : std::optional(next());
        if (argument.starts_with(name) && argument[name.size()] == '=')
            return argument.substr(name.size() + 1);
        return std::nullopt;
    }

private:
    std::vector<std::string> const& m_arguments;
    std::size_t m_next { 0 };
};

}

Meaning parse(std::vector<std::string> const& arguments)
{
    LaunchRequest request;
    Options options(arguments);
    bool onlyUrls = false;
    while (!options.atEnd()) {
        auto const& argument = options.next();
        if (onlyUrls || !argument.starts_with('-')) {
            request.urls.push_back(argument);
        } else if (argument == "--") {
            onlyUrls = true;
        } else if (argument == "--help" || argument == "-h") {
            return ShowHelp {};
        } else if (argument == "--version") {
            return ShowVersion {};
        } else if (argument == "--hidden") {
            request.window = LaunchRequest::Window::leaveHidden;
        } else if (argument == "--safe-rendering") {
            request.rendering = Rendering::safe;
        } else if (auto const profile = options.value(argument, "--profile")) {
            if (!*profile || (*profile)->empty())
                return Refusal { "--profile needs the name of a profile" };
            request.profile = **profile;
        } else if (auto const item = options.value(argument, "--new")) {
            if (!*item || !NewItem::address(**item))
                return Refusal { "--new needs one of the words that --help shows" };
            request.newItem = **item;
        } else {
            return Refusal { "there is no option " + argument };
        }
    }
    return request;
}

std::string help()
{
    std::string items;
    for (auto const name : NewItem::names)
        items.append(items.empty() ? "" : ", ").append(name);
    return "Usage: tarn [OPTION]... [MAILTO-LINK]...\n"
           "Shows the window. Each mailto link opens a new message.\n"
           "\n"
           "  --profile NAME   work in this profile from now on\n"
           "  --new WHAT       begin something new:\n"
           "                   "
        + items
        + "\n"
          "  --hidden         start without showing the window\n"
          "  --safe-rendering\n"
          "                   draw everything in software, for broken graphics drivers\n"
          "  --version        print the version, and that of the web engine\n"
          "  -h, --help       print this\n"
          "\n"
          "A Tarn that is running already does what is asked.\n";
}

}
