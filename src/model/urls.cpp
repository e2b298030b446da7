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

QUrl pageAddress(const QUrl &home, const std::optional<QString> &given)
{
    if (given) {
        if (auto url = parseWebUrl(*given); url && *url != home)
            return *url;
    }
    return home;
}

QString percentEncodeQuery(const QString &text)
{
    return QString::fromLatin1(text.toUtf8().toPercentEncoding("!$&'()*+,/:;=?@"));
}

} // namespace lanternic
