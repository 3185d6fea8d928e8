#pragma once

#include "Response.h"
#include "Service.h"

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace tarn::stage {

// The files of the services' folder as answers. In HTML files {{name}} stands for a value, always HTML-escaped.
class Pages {
public:
    using Values = std::map<std::string, std::string, std::less<>>;
    struct Match {
        std::filesystem::path file;
        unsigned status;

        bool isPage() const { return file.extension() == ".html"; }
    };

    explicit Pages(std::filesystem::path folder)
        : m_folder(std::move(folder))
    {
    }

    // The file for a path as it came over the wire: the file of that name, with or without ".html", else the start page
    // when the path belongs to the application, else the page for unknown addresses. Below "/_stage/" the shared files.
    // Never a file outside the service's folder.
    Match match(Service const&, std::string_view path) const;
    Response read(Match const&, Values const&) const;
    // A page that has no address of its own.
    Response page(std::string_view service, std::string_view name, Values const&) const;

private:
    std::optional<std::filesystem::path> fileIn(std::string_view service, std::string_view path) const;

    std::filesystem::path m_folder;
};

}
