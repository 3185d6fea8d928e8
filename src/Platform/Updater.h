#pragma once

#include "Support/Reply.h"
#include "Support/Url.h"

#include <cstddef>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace tarn::platform {

struct FetchResult {
    // The whole file; nothing when it could not be had.
    std::optional<std::string> content {};
    // Then: why, for users.
    std::string problem {};
};

// A file that the system's installer takes, and what it says of itself.
struct PackageFile {
    std::filesystem::path path;
    std::string name;
    std::string version;
};

// Shows how far something is; gone with the object.
class ProgressPanel {
public:
    virtual ~ProgressPanel() = default;

    // 0 to 1.
    virtual void setFraction(double) = 0;
};

// The means of a software update. Decides nothing: what to fetch and whom to trust is the caller's.
class Updater {
public:
    virtual ~Updater() = default;

    // Over HTTPS alone, redirects included, without cookies, within a time that is the platform's. At most limit bytes.
    // The progress is called with 0 to 1 where the size is known.
    virtual void fetch(Url const&, std::size_t limit, std::function<void(double)> progress, Reply<FetchResult>) = 0;
    // The fetch that runs ends with a problem.
    virtual void cancelFetch() = 0;
    virtual std::unique_ptr<ProgressPanel> showProgress(std::string const& text, std::function<void()> onCancel) = 0;
    // Writes the package into a folder of the user's own and reads what it says of itself; nothing when it is none.
    virtual void keep(std::string content, Reply<std::optional<PackageFile>>) = 0;
    // Hands the file to the system's installer, which asks the user. The reply is why that was not possible.
    virtual void install(PackageFile const&, Reply<std::optional<std::string>>) = 0;
};

}
