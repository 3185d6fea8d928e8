#include "Support/Ascii.h"
#include "Support/PercentEncoding.h"
#include "Support/Url.h"
#include "Support/UrlHost.h"

#include <algorithm>

namespace tarn {

namespace {

constexpr std::size_t maximumInput { std::size_t { 32 } << 20 };

bool isSchemeCharacter(char character)
{
    return isAsciiLetter(character) || isAsciiDigit(character) || character == '+' || character == '-'
        || character == '.';
}

bool isControlOrSpace(char character)
{
    return static_cast<unsigned char>(character) <= 0x20;
}

bool isTabOrNewline(char character)
{
    return character == '\t' || character == '\n' || character == '\r';
}

// Of a path and of all that comes before it.
bool endsPath(char character)
{
    return character == '?' || character == '#';
}

struct SpecialScheme {
    std::string_view name;
    // 0 for none.
    int defaultPort;
};

SpecialScheme const* findSpecialScheme(std::string_view name)
{
    static constexpr SpecialScheme schemes[] {
        { "https", 443 },
        { "http", 80 },
        { "file", 0 },
        { "ftp", 21 },
        { "ws", 80 },
        { "wss", 443 },
    };
    auto const* const found = std::ranges::find(schemes, name, &SpecialScheme::name);
    return found == std::end(schemes) ? nullptr : found;
}

// Of a dot, as it is or escaped, at the front; 0 when there is none.
std::size_t dotLength(std::string_view text)
{
    if (text.starts_with('.'))
        return 1;
    return text.starts_with("%2e") || text.starts_with("%2E") ? 3 : 0;
}

bool isSingleDot(std::string_view segment)
{
    return !segment.empty() && dotLength(segment) == segment.size();
}

bool isDoubleDot(std::string_view segment)
{
    auto const first = dotLength(segment);
    return first > 0 && isSingleDot(segment.substr(first));
}

bool isDriveLetter(std::string_view segment)
{
    return segment.size() == 2 && isAsciiLetter(segment[0]) && (segment[1] == ':' || segment[1] == '|');
}

}

// The state machine of the standard's basic URL parser, without a base URL, one function per part. Each takes its part
// off the front of m_rest and appends it, serialised, to the URL.
class UrlParser {
public:
    explicit UrlParser(std::string_view input)
        : m_rest(input)
    {
        output().reserve(input.size() + 16);
    }

    std::optional<Url> parse();

private:
    bool parseScheme();
    bool parseAuthority();
    bool parseFileHost();
    void parseUserInfo(std::string_view);
    bool parseHostAndPort(std::string_view);
    bool parsePort(std::string_view);
    void parsePath();
    void appendSegment(std::string_view);
    void removeLastSegment();
    void parseOpaquePath();
    void parseQueryAndFragment();

    std::string& output() { return m_url.m_string; }
    std::uint32_t position() const { return static_cast<std::uint32_t>(m_url.m_string.size()); }
    bool isFile() const { return m_special && m_special->name == "file"; }
    bool isSlash(char character) const { return character == '/' || (m_special && character == '\\'); }
    HostKind hostKind() const { return m_special ? HostKind::domain : HostKind::opaque; }

    bool takeSlash();
    // What comes before the first character of which the predicate is true.
    template <typename Predicate> std::string_view takeUntil(Predicate predicate)
    {
        auto const length = std::ranges::find_if(m_rest, predicate) - m_rest.begin();
        auto const taken = m_rest.substr(0, length);
        m_rest.remove_prefix(length);
        return taken;
    }

    std::string_view m_rest;
    Url m_url;
    SpecialScheme const* m_special { nullptr };
    bool m_hasAuthority { false };
};

std::optional<Url> UrlParser::parse()
{
    if (!parseScheme() || !parseAuthority())
        return std::nullopt;
    m_url.m_pathStart = position();
    if (takeSlash() || m_special)
        parsePath();
    else if (!m_hasAuthority)
        parseOpaquePath();
    m_url.m_pathEnd = position();
    parseQueryAndFragment();
    return std::move(m_url);
}

bool UrlParser::parseScheme()
{
    auto const name = takeUntil([](char character) { return !isSchemeCharacter(character); });
    if (name.empty() || !isAsciiLetter(name.front()) || !m_rest.starts_with(':'))
        return false;
    m_rest.remove_prefix(1);
    output() += toAsciiLower(name);
    m_url.m_schemeEnd = position();
    m_special = findSpecialScheme(output());
    output() += ':';
    return true;
}

bool UrlParser::parseAuthority()
{
    m_hasAuthority = m_special || m_rest.starts_with("//");
    if (m_hasAuthority)
        output() += "//";
    m_url.m_hostStart = m_url.m_hostEnd = position();
    if (!m_hasAuthority)
        return true;
    if (isFile())
        return parseFileHost();
    if (m_special)
        while (takeSlash()) { }
    else
        m_rest.remove_prefix(2);
    auto authority = takeUntil([this](char character) { return isSlash(character) || endsPath(character); });
    if (auto const at = authority.rfind('@'); at != authority.npos) {
        parseUserInfo(authority.substr(0, at));
        authority.remove_prefix(at + 1);
        if (authority.empty())
            return false;
    }
    return parseHostAndPort(authority);
}

bool UrlParser::parseFileHost()
{
    if (m_rest.size() < 2 || !isSlash(m_rest[0]) || !isSlash(m_rest[1]))
        return true;
    m_rest.remove_prefix(2);
    auto const behindSlashes = m_rest;
    auto const text = takeUntil([this](char character) { return isSlash(character) || endsPath(character); });
    if (text.empty())
        return true;
    if (isDriveLetter(text)) {
        m_rest = behindSlashes;
        return true;
    }
    auto const host = parseHost(text, HostKind::domain);
    if (!host)
        return false;
    if (*host != "localhost")
        output() += *host;
    m_url.m_hostEnd = position();
    return true;
}

void UrlParser::parseUserInfo(std::string_view text)
{
    auto const colon = std::min(text.find(':'), text.size());
    auto const user = text.substr(0, colon);
    auto const password = text.substr(std::min(colon + 1, text.size()));
    if (user.empty() && password.empty())
        return;
    appendPercentEncoded(output(), user, userInfoSet);
    if (!password.empty()) {
        output() += ':';
        appendPercentEncoded(output(), password, userInfoSet);
    }
    output() += '@';
}

bool UrlParser::parseHostAndPort(std::string_view text)
{
    bool inBrackets = false;
    auto const* const colon = std::ranges::find_if(text, [&](char character) {
        if (character == '[' || character == ']')
            inBrackets = character == '[';
        return character == ':' && !inBrackets;
    });
    auto const hostText = text.substr(0, colon - text.begin());
    auto const portText = text.substr(hostText.size());
    if (hostText.empty() && (m_special || !portText.empty()))
        return false;
    auto const host = parseHost(hostText, hostKind());
    if (!host)
        return false;
    m_url.m_hostStart = position();
    output() += *host;
    m_url.m_hostEnd = position();
    return portText.empty() || parsePort(portText.substr(1));
}

bool UrlParser::parsePort(std::string_view text)
{
    int port = 0;
    for (auto const character : text) {
        if (!isAsciiDigit(character))
            return false;
        port = port * 10 + (character - '0');
        if (port > 65535)
            return false;
    }
    if (!text.empty() && !(m_special && port == m_special->defaultPort))
        output() += ':' + std::to_string(port);
    return true;
}

void UrlParser::parsePath()
{
    auto text = takeUntil(endsPath);
    for (bool more = true; more;) {
        auto const length = static_cast<std::size_t>(
            std::ranges::find_if(text, [this](char character) { return isSlash(character); }) - text.begin());
        auto const segment = text.substr(0, length);
        more = length < text.size();
        text.remove_prefix(more ? length + 1 : length);
        auto const isDots = isSingleDot(segment) || isDoubleDot(segment);
        if (isDoubleDot(segment))
            removeLastSegment();
        if (!isDots)
            appendSegment(segment);
        else if (!more)
            output() += '/';
    }
    // Two slashes where there is no host would read as the start of one.
    if (!m_hasAuthority && output().compare(m_url.m_pathStart, 2, "//") == 0) {
        output().insert(m_url.m_pathStart, "/.");
        m_url.m_pathStart += 2;
    }
}

void UrlParser::appendSegment(std::string_view segment)
{
    auto const isFirst = position() == m_url.m_pathStart;
    output() += '/';
    if (isFile() && isFirst && isDriveLetter(segment))
        output() += { segment[0], ':' };
    else
        appendPercentEncoded(output(), segment, pathSet);
}

void UrlParser::removeLastSegment()
{
    auto const path = std::string_view(output()).substr(m_url.m_pathStart);
    auto const slash = path.rfind('/');
    if (slash == path.npos || (isFile() && slash == 0 && isDriveLetter(path.substr(1))))
        return;
    output().resize(m_url.m_pathStart + slash);
}

void UrlParser::parseOpaquePath()
{
    auto const text = takeUntil(endsPath);
    appendPercentEncoded(output(), text, c0ControlSet);
    // A space at the end would be lost when what follows is taken away.
    if (!m_rest.empty() && text.ends_with(' ')) {
        output().pop_back();
        output() += "%20";
    }
}

void UrlParser::parseQueryAndFragment()
{
    if (m_rest.starts_with('?')) {
        auto const text = takeUntil([](char character) { return character == '#'; });
        output() += '?';
        appendPercentEncoded(output(), text.substr(1), m_special ? specialQuerySet : querySet);
    }
    m_url.m_queryEnd = position();
    if (m_rest.starts_with('#')) {
        output() += '#';
        appendPercentEncoded(output(), m_rest.substr(1), fragmentSet);
    }
}

bool UrlParser::takeSlash()
{
    if (m_rest.empty() || !isSlash(m_rest.front()))
        return false;
    m_rest.remove_prefix(1);
    return true;
}

std::optional<Url> Url::parse(std::string_view input)
{
    if (input.size() > maximumInput)
        return std::nullopt;
    auto const* const first = std::ranges::find_if_not(input, isControlOrSpace);
    input.remove_prefix(first - input.begin());
    while (!input.empty() && isControlOrSpace(input.back()))
        input.remove_suffix(1);
    if (std::ranges::none_of(input, isTabOrNewline))
        return UrlParser(input).parse();
    std::string stripped(input);
    std::erase_if(stripped, isTabOrNewline);
    return UrlParser(stripped).parse();
}

}
