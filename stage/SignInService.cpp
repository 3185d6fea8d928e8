#include "SignInService.h"

#include "Text.h"

#include <glib.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <memory>

namespace tarn::stage {

namespace {

constexpr std::string_view signInCookie = "SID";
constexpr std::string_view reservedCookie = "STAGE_ACCOUNT"; // the account that a jar will be given, before it has it
constexpr std::string_view year = "31536000";
constexpr std::string_view none = "0";

std::pair<std::string, std::string> setCookie(std::string_view name, std::string_view value, std::string_view maxAge)
{
    std::string cookie(name);
    cookie.append("=").append(value).append("; Domain=google.com; Path=/; Max-Age=").append(maxAge);
    return { "Set-Cookie", cookie + "; Secure; HttpOnly; SameSite=Lax" };
}

std::string onAccounts(std::string_view path, std::string_view continueUrl)
{
    std::string url("https://");
    return url.append(accountsHost).append(path).append("continue=").append(escapeQueryValue(continueUrl));
}

}

void SignInService::setAccount(Pages::Values& values, Account const& account)
{
    values["account.id"] = account.id;
    values["account.name"] = account.name;
    values["account.email"] = account.email;
    values["account.initial"] = account.name.substr(0, 1);
}

std::string SignInService::accountIn(std::string_view cookies)
{
    auto const id = cookieValue(cookies, signInCookie);
    return id && accountWithId(*id) ? *id : std::string();
}

Response SignInService::toSignIn(std::string_view continueUrl)
{
    return Response::redirect(onAccounts("/ServiceLogin?", continueUrl));
}

std::string SignInService::checkedContinue(std::optional<std::string> const& url)
{
    auto const fallback = "https://" + std::string(mailHost) + "/";
    // Nothing that two URL parsers could read differently: printable ASCII, no backslash, no user info.
    if (!url || !isPrintableAscii(*url) || url->find('\\') != url->npos)
        return fallback;
    std::unique_ptr<GUri, decltype(&g_uri_unref)> const uri(
        g_uri_parse(url->c_str(), G_URI_FLAGS_ENCODED, nullptr), g_uri_unref);
    if (!uri || std::string_view(g_uri_get_scheme(uri.get())) != "https" || !g_uri_get_host(uri.get())
        || g_uri_get_userinfo(uri.get()))
        return fallback;
    return std::string_view(g_uri_get_host(uri.get())).ends_with(".google.com") ? *url : fallback;
}

std::optional<Response> SignInService::answer(Request const& request, Pages::Values values)
{
    auto const continueUrl = checkedContinue(formValue(request.query, "continue"));
    values["continue"] = continueUrl;
    values["continue.encoded"] = escapeQueryValue(continueUrl);
    if (request.host == accountsHost)
        return answerAccounts(request, values, continueUrl);
    if (request.host != singleSignOnHost || request.path != "/common/login")
        return std::nullopt;
    if (request.method != "POST")
        return m_pages.page("sso", "login.html", values);
    auto const* const account = accountWithId(formValue(request.body, "account").value_or(""));
    if (!account)
        return m_pages.page("sso", "login.html", values);
    setAccount(values, *account);
    return m_pages.page("sso", "return.html", values);
}

std::optional<Response> SignInService::answerAccounts(
    Request const& request, Pages::Values const& values, std::string const& continueUrl)
{
    auto const& path = request.path;
    bool const post = request.method == "POST";
    if (path == "/" || path == "/ServiceLogin")
        return chooser(request, values, continueUrl);
    if (path == "/signin/challenge" && post) {
        auto const account = formValue(request.body, "account").value_or("");
        return Response::redirect(
            onAccounts("/signin/password?account=" + escapeQueryValue(account) + "&", continueUrl));
    }
    if (path == "/signin/password" && !post) {
        auto const* const account = accountWithId(formValue(request.query, "account").value_or(""));
        if (!account)
            return toSignIn(continueUrl);
        auto chosen = values;
        setAccount(chosen, *account);
        return m_pages.page("accounts", "password.html", chosen);
    }
    if ((path == "/signin/password" || path == "/signin/acs") && post)
        return signedIn(request, continueUrl);
    if (path == "/signin/sso")
        return Response::redirect(
            "https://" + std::string(singleSignOnHost) + "/common/login?continue=" + escapeQueryValue(continueUrl));
    if (path == "/signin/automatic" && post && m_mode == SignIn::automatic)
        return automaticAccount(request);
    if (path == "/CheckCookie")
        return request.account.empty() ? toSignIn(continueUrl) : Response::redirect(continueUrl);
    if (path == "/Logout") {
        auto response = Response::redirect(onAccounts("/ServiceLogin?by=hand&", continueUrl));
        response.headers.push_back(setCookie(signInCookie, "", none));
        return response;
    }
    return std::nullopt;
}

Response SignInService::chooser(
    Request const& request, Pages::Values const& values, std::string const& continueUrl) const
{
    bool const byHand = formValue(request.query, "by") == "hand";
    if (!request.account.empty() && !byHand)
        return Response::redirect(onAccounts("/CheckCookie?", continueUrl));
    bool const automatic = m_mode == SignIn::automatic && !byHand;
    return m_pages.page("accounts", automatic ? "automatic.html" : "choose.html", values);
}

Response SignInService::signedIn(Request const& request, std::string const& continueUrl) const
{
    auto const* const account = accountWithId(formValue(request.body, "account").value_or(""));
    if (!account)
        return toSignIn(continueUrl);
    auto response = Response::redirect(onAccounts("/CheckCookie?", continueUrl));
    response.headers.push_back(setCookie(signInCookie, account->id, year));
    return response;
}

Response SignInService::automaticAccount(Request const& request)
{
    auto const* account = accountWithId(request.account);
    if (!account)
        account = accountWithId(cookieValue(request.cookies, reservedCookie).value_or(""));
    if (!account)
        account = accountWithId(nextAccount());
    nlohmann::json const answer { { "id", account->id }, { "name", account->name } };
    return { 200, "application/json", answer.dump(),
        { setCookie(reservedCookie, account->id, year), { "Cache-Control", "no-store" } } };
}

void SignInService::noticed(std::string_view account)
{
    m_jarsOfAccount.try_emplace(std::string(account), 1);
}

std::string_view SignInService::nextAccount()
{
    auto const next = std::ranges::min(accounts(), {}, [this](Account const& account) {
        auto const found = m_jarsOfAccount.find(account.id);
        return found == m_jarsOfAccount.end() ? 0 : found->second;
    });
    ++m_jarsOfAccount[std::string(next.id)];
    return next.id;
}

}
