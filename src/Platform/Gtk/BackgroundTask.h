#pragma once

#include "Platform/Gtk/Ref.h"

#include <gio/gio.h>

#include <functional>
#include <memory>
#include <optional>

namespace tarn::gtk {

// Runs the work on a thread of its own and hands its result to the completion on the main thread, where both also end:
// what they hold may belong to it.
template <typename Result> void runInBackground(std::function<Result()> work, std::function<void(Result)> completion)
{
    struct Job {
        std::function<Result()> work;
        std::function<void(Result)> completion;
        std::optional<Result> result;
    };
    auto const task = adopt(g_task_new(
        nullptr, nullptr,
        [](GObject*, GAsyncResult* result, gpointer) {
            // Not left to the task: the thread may be the last that holds it.
            std::unique_ptr<Job> const job(static_cast<Job*>(g_task_get_task_data(G_TASK(result))));
            job->completion(std::move(*job->result));
        },
        nullptr));
    g_task_set_task_data(task.get(), new Job { std::move(work), std::move(completion), {} }, nullptr);
    g_task_run_in_thread(task.get(), [](GTask* running, gpointer, gpointer data, GCancellable*) {
        auto* const job = static_cast<Job*>(data);
        job->result.emplace(job->work());
        g_task_return_boolean(running, TRUE);
    });
}

}
