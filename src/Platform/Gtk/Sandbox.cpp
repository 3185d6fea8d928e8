#include "Platform/Gtk/Sandbox.h"

#include <sys/wait.h>

#include <charconv>
#include <cstdlib>
#include <cstring>
#include <utility>

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

// By this mark the engine knows it.
bool looksLikeFlatpak()
{
    return g_file_test("/.flatpak-info", G_FILE_TEST_EXISTS);
}

}

Sandbox::Sandbox()
    : m_cancellable(adopt(g_cancellable_new()))
{
    // The engine's own switch, for tests in places that have no namespaces. Nothing of Tarn ever sets it.
    auto const* const off = std::getenv("WEBKIT_DISABLE_SANDBOX_THIS_IS_DANGEROUS");
    // Inside Flatpak it is Flatpak that puts pages into sandboxes of their own.
    if ((off && *off == '1') || (looksLikeFlatpak() && g_getenv("FLATPAK_ID")))
        m_state = State::works;
    else
        start();
}

Sandbox::~Sandbox()
{
    g_cancellable_cancel(m_cancellable.get());
}

void Sandbox::whenKnown(std::function<void(Problem const&)> completion)
{
    lookEarly();
    if (m_state == State::works) {
        completion(std::nullopt);
        return;
    }
    m_waiting.push_back(std::move(completion));
    // The user may have allowed it meanwhile.
    if (m_state == State::fails)
        start();
}

void Sandbox::lookEarly()
{
    if (m_state == State::trying && hasJustWorked())
        finish(std::nullopt);
}

bool Sandbox::hasJustWorked() const
{
    auto const* const identifier = m_trial ? g_subprocess_get_identifier(m_trial.get()) : nullptr;
    pid_t process = 0;
    if (!identifier || std::from_chars(identifier, identifier + std::strlen(identifier), process).ec != std::errc())
        return false;
    siginfo_t end {};
    // Left for the main loop to collect.
    return waitid(P_PID, static_cast<id_t>(process), &end, WEXITED | WNOHANG | WNOWAIT) == 0 && end.si_pid == process
        && end.si_code == CLD_EXITED && end.si_status == EXIT_SUCCESS;
}

void Sandbox::start()
{
    m_state = State::trying;
    if (looksLikeFlatpak()) {
        finish(
            "The file /.flatpak-info lies on this computer although Tarn does not run inside Flatpak. It misleads the "
            "web engine into showing pages without a sandbox. Remove the file, then try again.");
        return;
    }
    GError* error = nullptr;
    // What the engine asks for, less the details of its file system.
    m_trial
        = adopt(g_subprocess_new(GSubprocessFlags(G_SUBPROCESS_FLAGS_STDOUT_SILENCE | G_SUBPROCESS_FLAGS_STDERR_PIPE),
            &error, "bwrap", "--die-with-parent", "--unshare-pid", "--unshare-uts", "--ro-bind", "/", "/", "--dev",
            "/dev", "--proc", "/proc", "true", nullptr));
    if (!m_trial) {
        finish(explanation(error->message));
        g_error_free(error);
        return;
    }
    g_subprocess_communicate_utf8_async(
        m_trial.get(), nullptr, m_cancellable.get(),
        [](GObject* object, GAsyncResult* result, gpointer self) {
            g_autofree char* output = nullptr;
            GError* failure = nullptr;
            auto* const tried = G_SUBPROCESS(object);
            bool const read = g_subprocess_communicate_utf8_finish(tried, result, nullptr, &output, &failure);
            bool const cancelled = g_error_matches(failure, G_IO_ERROR, G_IO_ERROR_CANCELLED);
            g_clear_error(&failure);
            if (cancelled)
                return;
            if (read && g_subprocess_get_successful(tried))
                static_cast<Sandbox*>(self)->finish(std::nullopt);
            else
                static_cast<Sandbox*>(self)->finish(explanation(read && *output ? output : "bwrap did not run"));
        },
        this);
}

void Sandbox::finish(Problem problem)
{
    m_state = problem ? State::fails : State::works;
    for (auto const& completion : std::exchange(m_waiting, {}))
        completion(problem);
}

}
