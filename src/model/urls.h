#pragma once

#include <QString>
#include <QUrl>
#include <optional>

namespace lanternic {

// A URL only when the text parses strictly; empty text is no URL.
std::optional<QUrl> parseUrl(const QString &text);

// A link a feed may give: an absolute http or https URL with a host, and nothing else.
std::optional<QUrl> parseWebUrl(const QString &text);

// A web address as a result keeps it. One a feed gives is kept as the text it gave, which is
// parsed again where the address is used: a QUrl takes several hundred bytes, and a pass holds
// one or more for every source. A source's own address is kept as the QUrl it already holds.
class WebLink {
public:
    WebLink(const QUrl &url) : m_url(url) {}
    // An http or https address with a host, as parseWebUrl() takes it, or nothing.
    static std::optional<WebLink> parse(const QString &text);

    QUrl url() const { return m_text.isNull() ? m_url : QUrl(m_text, QUrl::StrictMode); }
    // A plain address (lower-case host labels, a port, a path of unreserved characters and
    // slashes) reads back as it was written however its parts are formatted: it is given
    // unparsed.
    QString toString(QUrl::ComponentFormattingOption options = QUrl::PrettyDecoded) const;

    bool operator==(const WebLink &other) const;

private:
    explicit WebLink(const QString &text) : m_text(text) {}
    friend WebLink pageAddress(const QUrl &home, const std::optional<QString> &given);

    QString m_text;
    QUrl m_url;
};

// The address a page gives for itself where it is a web link, else home. Most pages give the
// address they are read at: home's copy then serves, not a second one.
WebLink pageAddress(const QUrl &home, const std::optional<QString> &given);

// The link's address, where there is a link.
inline std::optional<QUrl> urlOf(const std::optional<WebLink> &link)
{
    return link ? std::optional(link->url()) : std::nullopt;
}

// Escapes every byte of the UTF-8 form except letters, digits and !$&'()*+,-./:;=?@_~,
// the characters a URL query may hold as they are.
QString percentEncodeQuery(const QString &text);

} // namespace lanternic
