#include "model/urls.h"

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

std::optional<WebLink> WebLink::parse(const QString &text)
{
    if (!parseWebUrl(text))
        return std::nullopt;
    return WebLink(text);
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
    if (given) {
        if (auto url = parseWebUrl(*given); url && *url != home)
            return WebLink(*given);
    }
    return home;
}

QString percentEncodeQuery(const QString &text)
{
    return QString::fromLatin1(text.toUtf8().toPercentEncoding("!$&'()*+,/:;=?@"));
}

} // namespace lanternic
