#include "Pages.h"

#include "Text.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <iterator>

namespace tarn::stage {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view sharedPrefix = "/_stage/";
constexpr std::string_view sharedFolder = "shared";

std::string contentTypeOf(fs::path const& file)
{
    static constexpr std::array<std::pair<std::string_view, std::string_view>, 6> types { {
        { ".html", "text/html; charset=utf-8" },
        { ".css", "text/css; charset=utf-8" },
        { ".js", "text/javascript; charset=utf-8" },
        { ".json", "application/json" },
        { ".svg", "image/svg+xml" },
        { ".txt", "text/plain; charset=utf-8" },
    } };
    auto const* const type
        = std::ranges::find(types, file.extension().string(), [](auto& entry) { return entry.first; });
    return std::string(type == types.end() ? "application/octet-stream" : type->second);
}

// A relative path of plain names; nothing for anything that could lead out of a folder or to a hidden file.
std::optional<fs::path> relativePath(std::string_view path)
{
    auto const decoded = percentDecoded(path, "/\\");
    if (!decoded)
        return std::nullopt;
    fs::path result;
    std::string_view rest(*decoded);
    while (!rest.empty()) {
        auto const name = rest.substr(0, rest.find('/'));
        if (name.starts_with('.') || name.find('\\') != name.npos)
            return std::nullopt;
        result /= name;
        rest.remove_prefix(std::min(rest.size(), name.size() + 1));
    }
    return result;
}

std::string expand(std::string_view text, Pages::Values const& values)
{
    std::string expanded;
    while (true) {
        auto const start = text.find("{{");
        auto const end = start == text.npos ? text.npos : text.find("}}", start);
        if (end == text.npos)
            return expanded.append(text);
        expanded.append(text.substr(0, start));
        if (auto const value = values.find(text.substr(start + 2, end - start - 2)); value != values.end())
            expanded += escapeHtml(value->second);
        text.remove_prefix(end + 2);
    }
}

}

std::optional<fs::path> Pages::fileIn(std::string_view service, std::string_view path) const
{
    auto const relative = relativePath(path);
    if (!relative)
        return std::nullopt;
    auto const file = m_folder / service / (relative->empty() ? "index.html" : *relative);
    auto page = file;
    page += ".html";
    std::error_code ignored;
    for (auto const& candidate : { file, page }) {
        if (fs::is_regular_file(candidate, ignored))
            return candidate;
    }
    return std::nullopt;
}

Pages::Match Pages::match(Service const& service, std::string_view path) const
{
    if (path.starts_with(sharedPrefix)) {
        if (auto file = fileIn(sharedFolder, path.substr(sharedPrefix.size())))
            return { *file, 200 };
    } else if (auto file = fileIn(service.folder, path)) {
        return { *file, 200 };
    } else if (relativePath(path) && std::ranges::any_of(service.applicationPaths, [&](std::string_view prefix) {
                   return !prefix.empty() && path.starts_with(prefix);
               })) {
        return { m_folder / service.folder / "index.html", 200 };
    }
    return { m_folder / sharedFolder / "unknown.html", 404 };
}

Response Pages::read(Match const& match, Values const& values) const
{
    std::ifstream file(match.file, std::ios::binary);
    if (!file)
        return { 404, "text/plain; charset=utf-8", "There is nothing here.", {} };
    std::string content { std::istreambuf_iterator<char>(file), {} };
    bool const page = match.isPage();
    return { match.status, contentTypeOf(match.file), page ? expand(content, values) : std::move(content),
        { { "Cache-Control", page ? "no-store" : "max-age=3600" } } };
}

Response Pages::page(std::string_view service, std::string_view name, Values const& values) const
{
    return read({ m_folder / service / name, 200 }, values);
}

}
