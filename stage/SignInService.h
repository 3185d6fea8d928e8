#pragma once

#include "Account.h"
#include "Pages.h"
#include "Request.h"
#include "Response.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace tarn::stage {

enum class SignIn {
    byHand, // a person chooses an account
    automatic, // each cookie jar that comes without an account is given the next one, by a page that submits itself
};

// The accounts host and the single-sign-on provider: choosing an account, a stand-in for the password (anything will
// do), the cookie, and the way back to the application that asked.
class SignInService {
public:
    SignInService(Pages const& pages, SignIn mode)
        : m_pages(pages)
        , m_mode(mode)
    {
    }

    // The values "account.…" of a page that is about that person.
    static void setAccount(Pages::Values&, Account const&);
    // The id of the account whose sign-in cookie is in a Cookie header, or empty.
    static std::string accountIn(std::string_view cookies);
    // Where an application's page sends a visitor who is not signed in.
    static Response toSignIn(std::string_view continueUrl);
    // The URL itself when it is an https URL on a host below google.com, else the mail application.
    static std::string checkedContinue(std::optional<std::string> const& url);

    // Nothing for a request that is no step of signing in or out.
    std::optional<Response> answer(Request const&, Pages::Values);
    // An account that some cookie jar has, so that new ones get others first.
    void noticed(std::string_view account);

private:
    std::optional<Response> answerAccounts(Request const&, Pages::Values const&, std::string const& continueUrl);
    Response chooser(Request const&, Pages::Values const&, std::string const& continueUrl) const;
    Response signedIn(Request const&, std::string const& continueUrl) const;
    Response automaticAccount(Request const&);
    std::string_view nextAccount();

    Pages const& m_pages;
    SignIn m_mode;
    std::map<std::string, unsigned, std::less<>> m_jarsOfAccount;
};

}
