#include "Settings/NotificationsPane.h"

#include "Fakes/FakeDesktop.h"
#include "Fakes/FakeNotificationCenter.h"

#include <gmock/gmock.h>

namespace tarn {
namespace {

using Status = platform::AuthorizationStatus;

class NotificationsPaneTest : public testing::Test {
protected:
    test::FakeWorkspace workspace;
    test::FakeActivation activation;
    test::FakeNotificationCenter center;
    int gmailSettings { 0 };
    NotificationsPane pane { { .workspace = workspace, .activation = activation, .center = &center },
        [this] { ++gmailSettings; } };
};

TEST_F(NotificationsPaneTest, SaysWhatTheDesktopAllowsWhileItIsShown)
{
    int changes = 0;
    pane.onChange = [&] { ++changes; };
    activation.didBecomeActive.emit();
    EXPECT_TRUE(center.questions.empty()) << "nobody looks";

    pane.didAppear();
    EXPECT_EQ(pane.statusText(), "") << "not known yet";
    struct Case {
        Status status;
        char const* text;
    };
    for (auto const& [status, text] : {
             Case { Status::notDetermined, "Not set yet." },
             Case { Status::denied, "Turned off. Tarn cannot show notifications until they are allowed." },
             Case { Status::provisional, "Allowed on this Mac." },
             Case { Status::authorized, "Allowed on this Mac." },
         }) {
        center.status = status;
        activation.didBecomeActive.emit();
        center.answerQuestions();
        EXPECT_EQ(pane.statusText(), text);
    }
    EXPECT_EQ(changes, 4);
    activation.didBecomeActive.emit();
    center.answerQuestions();
    EXPECT_EQ(changes, 4) << "nothing new";

    pane.didDisappear();
    activation.didBecomeActive.emit();
    EXPECT_TRUE(center.questions.empty());
}

TEST_F(NotificationsPaneTest, ButtonsLeadToTheTwoSwitches)
{
    pane.openSystemSettings();
    pane.openGmailSettings();
    EXPECT_EQ(workspace.notificationSettings, 1);
    EXPECT_EQ(gmailSettings, 1);

    NotificationsPane nobody({ .workspace = workspace, .activation = activation, .center = nullptr }, [] {});
    nobody.didAppear();
    EXPECT_EQ(nobody.statusText(), "");
}

}
}
