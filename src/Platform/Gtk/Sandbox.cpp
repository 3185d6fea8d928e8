#include "Platform/Gtk/Sandbox.h"

#include "Platform/Gtk/Ref.h"

#include <gio/gio.h>

namespace tarn::gtk {

namespace {

std::string explanation(std::string reason)
{
    while (!reason.empty() && reason.back() == '\n')
        reason.pop_back();
    return "The web engine's sandbox could not start: " + reason
        + "\n\nIt needs user namespaces. To allow them, set the kernel settings user.max_user_namespaces to more than "
          "0 "
          "and, where it exists, kernel.unprivileged_userns_clone to 1. In a container, start it with a seccomp "
          "profile that allows namespaces to be made.";
}

}

void Sandbox::probe(std::function<void(std::optional<std::string>)> completion)
{
    GError* error = nullptr;
    // What the engine asks for, less the details of its file system.
    auto const process
        = adopt(g_subprocess_new(GSubprocessFlags(G_SUBPROCESS_FLAGS_STDOUT_SILENCE | G_SUBPROCESS_FLAGS_STDERR_PIPE),
            &error, "bwrap", "--die-with-parent", "--unshare-pid", "--unshare-uts", "--ro-bind", "/", "/", "--dev",
            "/dev", "--proc", "/proc", "true", nullptr));
    if (!process) {
        completion(explanation(error->message));
        g_error_free(error);
        return;
    }
    g_subprocess_communicate_utf8_async(
        process.get(), nullptr, nullptr,
        [](GObject* object, GAsyncResult* result, gpointer data) {
            std::unique_ptr<std::function<void(std::optional<std::string>)>> const done(
                static_cast<std::function<void(std::optional<std::string>)>*>(data));
            g_autofree char* output = nullptr;
            auto* const finished = G_SUBPROCESS(object);
            bool const read = g_subprocess_communicate_utf8_finish(finished, result, nullptr, &output, nullptr);
            if (read && g_subprocess_get_successful(finished))
                (*done)(std::nullopt);
            else
                (*done)(explanation(read && output && *output ? output : "bwrap did not run"));
        },
        new std::function(std::move(completion)));
}

}
