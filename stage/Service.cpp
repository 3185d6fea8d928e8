#include "Service.h"

#include <algorithm>
#include <array>

namespace tarn::stage {

namespace {

using Paths = std::array<std::string_view, 3>;
constexpr Paths mailPaths { "/mail/" };
constexpr Paths calendarPaths { "/calendar/" };
constexpr Paths drivePaths { "/drive/" };
constexpr Paths docsPaths { "/document/", "/spreadsheets/", "/presentation/" };
constexpr Paths geminiPaths { "/app" };
constexpr Paths keepPaths { "/u/" };
constexpr Paths tasksPaths { "/tasks/", "/u/" };
constexpr Paths contactsPaths { "/new", "/person/", "/u/" };

constexpr std::array services {
    Service { mailHost, "mail", Service::Access::signedIn, mailPaths },
    Service { "calendar.google.com", "calendar", Service::Access::signedIn, calendarPaths },
    Service { "drive.google.com", "drive", Service::Access::signedIn, drivePaths },
    Service { "docs.google.com", "docs", Service::Access::signedIn, docsPaths },
    Service { "sheets.google.com", "docs", Service::Access::signedIn, docsPaths },
    Service { "slides.google.com", "docs", Service::Access::signedIn, docsPaths },
    Service { "gemini.google.com", "gemini", Service::Access::signedIn, geminiPaths },
    Service { "keep.google.com", "keep", Service::Access::signedIn, keepPaths },
    Service { "tasks.google.com", "tasks", Service::Access::signedIn, tasksPaths },
    Service { "contacts.google.com", "contacts", Service::Access::signedIn, contactsPaths },
    Service { "myaccount.google.com", "account", Service::Access::signedIn, {} },
    Service { accountsHost, "accounts", Service::Access::open, {} },
    Service { singleSignOnHost, "sso", Service::Access::open, {} },
};
constexpr Service foreign { {}, "foreign", Service::Access::open, {} };

}

Service const& serviceOf(std::string_view host)
{
    auto const found = std::ranges::find(services, host, &Service::host);
    return found == services.end() ? foreign : *found;
}

}
