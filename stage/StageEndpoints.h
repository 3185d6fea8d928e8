#pragma once

#include "HeldAnswers.h"
#include "Mailboxes.h"
#include "Request.h"
#include "Response.h"

#include <libsoup/soup.h>

#include <optional>

namespace tarn::stage {

// The addresses below "/_stage/" that are not files, the same under every host:
//   beacon                     POST: what a page reports of itself; it is in the request log
//   state                      GET: the mailbox of the account
//   state/events               the same as server-sent events, at once and after each change
//   state/unread?count=N       POST: makes N conversations unread
//   state/read?id=ID           POST: marks a conversation as read
//   state/deliver?from=&subject=   POST: a new message
//   auth-basic                 asks for HTTP basic authentication; the password is "tarn", any user
//   slow?seconds=N             answers after N seconds, at most 600
//   hang                       never answers
//   download/NAME?size=N&kind=K    an attachment of N bytes: sized (default), unsized (without a length), slow (twenty
//                              pieces, each after "pause" milliseconds), broken (slow, and half of it never comes), or
//                              inline (no attachment, only a type that no browser shows)
// The state's account is the signed-in one, or "account=ID" in the query.
class StageEndpoints {
public:
    explicit StageEndpoints(Mailboxes&);

    // Whether the request was for one of them; it is then answered or held.
    bool answer(SoupServerMessage*, Request const&);

private:
    bool answerState(SoupServerMessage*, Request const&);
    void answerBasic(SoupServerMessage*) const;
    void answerDownload(SoupServerMessage*, Request const&);

    Mailboxes& m_mailboxes;
    HeldAnswers m_held;
};

}
