#pragma once

#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace tarn::stage {

// What the mail pages know about unread conversations: one mailbox for each account, kept while the program runs.
class Mailboxes {
public:
    static constexpr unsigned maximumUnread = 999'999;

    Mailboxes();

    // Called with the account's id after each change.
    std::function<void(std::string const& account)> onChange;

    unsigned unread(std::string_view account) const;
    // Makes exactly that many conversations unread, at most maximumUnread.
    void setUnread(std::string_view account, unsigned count);
    // A conversation's id is "c" and its place in the list from 0, or what deliver() gave. Others are ignored.
    void markRead(std::string_view account, std::string_view conversation);
    // A new unread conversation, which the pages also announce by a web notification. Returns its id.
    std::string deliver(std::string_view account, std::string from, std::string subject);

    // As JSON: {"account", "unread", "top", "read": [places], "arrivals": [{"id", "from", "subject", "read"}]}: unread
    // are the first "top" conversations of the list but for the places in "read", and the arrivals that are not read.
    // Nothing for what is no account.
    std::optional<std::string> state(std::string_view account) const;

private:
    struct Arrival {
        std::string id;
        std::string from;
        std::string subject;
        bool read;
    };
    struct Mailbox {
        unsigned top;
        std::set<unsigned> read; // all below top
        std::vector<Arrival> arrivals;
    };

    void changed(std::string_view account) const;

    // Operations on an account that is not one do nothing.
    std::map<std::string, Mailbox, std::less<>> m_mailboxes;
};

}
