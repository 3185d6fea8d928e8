#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>

namespace tarn::platform {

enum class NotificationSound { none, standard };

struct NotificationRequest {
    // A later request of the same identifier takes the place of this one.
    std::string identifier;
    // Plain text, UTF-8.
    std::string title {};
    std::string body {};
    NotificationSound sound { NotificationSound::none };
    // Notifications of one thread belong together.
    std::optional<std::string> threadIdentifier {};
    // Comes back with the response.
    std::map<std::string, std::string> userInfo {};
};

struct NotificationResponse {
    std::string identifier;
    std::map<std::string, std::string> userInfo;
};

// How a notification comes while the application runs: with a banner and its sound, or only in the desktop's list.
enum class NotificationPresentation { banner, listOnly };

enum class AuthorizationStatus { notDetermined, denied, authorized, provisional };

struct Authorization {
    AuthorizationStatus status { AuthorizationStatus::notDetermined };
    // Why there is none, where that is worth a line in the log.
    std::string reason {};
};

class NotificationCenterDelegate {
public:
    virtual NotificationPresentation willPresent(NotificationRequest const&)
    {
        return NotificationPresentation::banner;
    }
    // The user chose the notification.
    virtual void didReceive(NotificationResponse const&) { }

protected:
    ~NotificationCenterDelegate() = default;
};

// What shows the application's notifications on the desktop. Nothing here waits: each completion is called once, on a
// later turn of the run loop, or never when the centre ends before.
class NotificationCenter {
public:
    virtual ~NotificationCenter() = default;

    // It must outlive the centre or be taken out.
    virtual void setDelegate(NotificationCenterDelegate*) = 0;

    virtual void authorization(std::function<void(Authorization)> completion) = 0;
    // Asks the user where that is the way of the platform and has not been done.
    virtual void requestAuthorization(std::function<void(Authorization)> completion) = 0;

    // The completion gets the reason of a failure, or nothing.
    virtual void add(NotificationRequest const&, std::function<void(std::optional<std::string>)> completion) = 0;
    // Takes a notification away, shown or still on its way.
    virtual void remove(std::string const& identifier) = 0;
};

}
