#include "model/urls.h"

#include <algorithm>

namespace lanternic {

std::optional<QUrl> parseUrl(const QString &text)
{
    QUrl url(text, QUrl::StrictMode);
    if (!url.isValid())
        return std::nullopt;
    return url;
}

std::optional<QUrl> parseWebUrl(const QString &text)
{
    auto url = parseUrl(text);
    if (!url ||
        (url->scheme() != QLatin1StringView("http") &&
         url->scheme() != QLatin1StringView("https")) ||
        url->host().isEmpty())
        return std::nullopt;
    return url;
}

namespace {

bool isLowerLetterOrDigit(QChar c)
{
    return (c >= u'a' && c <= u'z') || (c >= u'0' && c <= u'9');
}

// The host of text when text is an http or https address in its plainest form: a host of
// lower-case labels of letters, digits and inner single hyphens, the last beginning with a
// letter (so no IPv4 form and no ACE label); a port without a leading zero; a path of
// unreserved characters and slashes; nothing else. Strict parsing takes every such text as an
// address with that host: nearly every link a page gives is one, known a link without a parse.
std::optional<QStringView> plainWebAddressHost(QStringView text)
{
    qsizetype at = text.startsWith(u"https://") ? 8 : text.startsWith(u"http://") ? 7 : 0;
    if (at == 0)
        return std::nullopt;
    const qsizetype hostStart = at;
    bool lastLabelBeginsWithLetter = false;
    for (;;) {
        const qsizetype labelStart = at;
        while (at < text.size() && (isLowerLetterOrDigit(text[at]) || text[at] == u'-'))
            ++at;
        const QStringView label = text.sliced(labelStart, at - labelStart);
        if (label.isEmpty() || label.size() > 63 || label.front() == u'-' || label.back() == u'-' ||
            label.contains(u"--"))
            return std::nullopt;
        lastLabelBeginsWithLetter = label.front() >= u'a';
        if (at == text.size() || text[at] != u'.')
            break;
        ++at;
    }
    const QStringView host = text.sliced(hostStart, at - hostStart);
    if (!lastLabelBeginsWithLetter || host.size() > 253)
        return std::nullopt;
    if (at < text.size() && text[at] == u':') {
        const qsizetype portStart = ++at;
        while (at < text.size() && at - portStart < 6 && text[at] >= u'0' && text[at] <= u'9')
            ++at;
        const QStringView port = text.sliced(portStart, at - portStart);
        if (port.isEmpty() || port.front() == u'0' || port.toInt() > 65535)
            return std::nullopt;
    }
    if (at < text.size() && text[at] != u'/')
        return std::nullopt;
    const bool plainPath = std::all_of(text.begin() + at, text.end(), [](QChar c) {
        return isLowerLetterOrDigit(c) || (c >= u'A' && c <= u'Z') || c == u'-' || c == u'.' ||
               c == u'_' || c == u'~' || c == u'/';
    });
    return plainPath ? std::optional(host) : std::nullopt;
}

} // namespace

std::optional<WebLink> WebLink::parse(const QString &text)
{
    if (!plainWebAddressHost(text) && !parseWebUrl(text))
        return std::nullopt;
    return WebLink(text);
}

QString WebLink::toString(QUrl::ComponentFormattingOption options) const
{
    if (!m_text.isNull() && plainWebAddressHost(m_text))
        return m_text;
    return url().toString(options);
}

bool WebLink::operator==(const WebLink &other) const
{
    if (m_text.isNull() && other.m_text.isNull())
        return m_url == other.m_url;
    if (!m_text.isNull() && !other.m_text.isNull() && m_text == other.m_text)
        return true;
    return url() == other.url();
}

WebLink pageAddress(const QUrl &home, const std::optional<QString> &given)
{
    if (!given)
        return home;
    // A plain address reads back as it is written: it is home's exactly when it reads the same.
    if (const std::optional<QStringView> host = plainWebAddressHost(*given)) {
        const bool isHome = *host == home.host() && *given == home.toString(QUrl::FullyEncoded);
        return isHome ? WebLink(home) : WebLink(*given);
    }
    if (auto url = parseWebUrl(*given); url && *url != home)
        return WebLink(*given);
    return home;
}

QString percentEncodeQuery(const QString &text)
{
    return QString::fromLatin1(text.toUtf8().toPercentEncoding("!$&'()*+,/:;=?@"));
}

} // namespace lanternic
