#pragma once

#include "Ref.h"
#include "Response.h"

#include <libsoup/soup.h>

#include <chrono>
#include <functional>
#include <list>
#include <string>
#include <string_view>

namespace tarn::stage {

void send(SoupServerMessage*, Response const&);

// Answers that are not complete when they begin. Each ends with its connection or with this object.
class HeldAnswers {
public:
    HeldAnswers() = default;
    HeldAnswers(HeldAnswers const&) = delete;
    HeldAnswers& operator=(HeldAnswers const&) = delete;
    ~HeldAnswers();

    void never(SoupServerMessage*);
    void later(SoupServerMessage*, std::chrono::milliseconds delay, Response);
    // A stream of server-sent events for one account.
    void streamEvents(SoupServerMessage*, std::string account, std::string_view firstEvent);
    void sendEvent(std::string_view account, std::string_view event);
    // The body in twenty pieces, one after each pause; the headers are set by the caller. After the last piece the
    // connection is closed when the promised length was not reached.
    void dripBody(SoupServerMessage*, std::chrono::milliseconds pause, std::string body);

private:
    struct Held {
        HeldAnswers* owner;
        std::list<Held>::iterator self;
        Ref<SoupServerMessage> message;
        std::string account; // of event streams
        unsigned timer { 0 };
        std::function<bool()> onTimer; // whether to go on
    };

    Held& hold(SoupServerMessage*);
    void startTimer(Held&, std::chrono::milliseconds interval, std::function<bool()>);
    void forget(Held&);

    std::list<Held> m_held;
};

}
