#include "Platform/Gtk/BackgroundTask.h"

#include <gtest/gtest.h>

namespace tarn {
namespace {

// What a job holds may be the toolkit's, which has one thread only. The thread of the job lets go of it at any moment:
// often enough to meet the one after the completion.
TEST(BackgroundTask, EndsOnTheMainThread)
{
    for (int turn = 0; turn < 5'000; ++turn) {
        bool isDone = false;
        auto held = std::make_shared<int>(turn);
        std::weak_ptr<int> const watched = held;
        gtk::runInBackground<int>(
            [held] { return *held + 1; }, [held, &isDone](int result) { isDone = result == *held + 1; });
        held.reset();
        while (!isDone)
            g_main_context_iteration(nullptr, TRUE);
        ASSERT_TRUE(watched.expired()) << "turn " << turn;
    }
}

}
}
