#pragma once

#include <QString>
#include <QUrl>
#include <optional>

namespace lanternic {

// A URL only when the text parses strictly; empty text is no URL.
std::optional<QUrl> parseUrl(const QString &text);

// A link a feed may give: an absolute http or https URL with a host, and nothing else.
std::optional<QUrl> parseWebUrl(const QString &text);

// The address a page gives for itself where it is a web link, else home. Most pages give the
// address they are read at: home's copy then serves, not a second one.
QUrl pageAddress(const QUrl &home, const std::optional<QString> &given);

// Escapes every byte of the UTF-8 form except letters, digits and !$&'()*+,-./:;=?@_~,
// the characters a URL query may hold as they are.
QString percentEncodeQuery(const QString &text);

} // namespace lanternic
