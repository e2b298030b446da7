#include "sources/appcast.h"

#include <QXmlStreamReader>

namespace lanternic::Appcast {

std::optional<Release> newestRelease(const QByteArray &appcast)
{
    QXmlStreamReader xml(appcast);
    std::optional<Release> newest;
    Release current;
    bool inItem = false;
    while (!xml.atEnd()) {
        xml.readNext();
        const QStringView name = xml.name();
        if (xml.isStartElement()) {
            if (name == u"item") {
                inItem = true;
                current = {};
            } else if (inItem && name == u"enclosure") {
                const QXmlStreamAttributes attributes = xml.attributes();
                for (const QXmlStreamAttribute &attribute : attributes) {
                    if (attribute.name() == u"version" && current.version.isEmpty())
                        current.version = attribute.value().toString();
                    else if (attribute.name() == u"shortVersionString")
                        current.version = attribute.value().toString();
                    else if (attribute.name() == u"url")
                        current.link = QUrl(attribute.value().toString());
                }
            } else if (inItem && name == u"shortVersionString") {
                current.version = xml.readElementText().trimmed();
            } else if (inItem && name == u"version" && current.version.isEmpty()) {
                current.version = xml.readElementText().trimmed();
            } else if (inItem && name == u"link" && current.link.isEmpty()) {
                current.link = QUrl(xml.readElementText().trimmed());
            }
        } else if (xml.isEndElement() && name == u"item") {
            inItem = false;
            if (!current.version.isEmpty() &&
                (!newest || compareVersions(current.version, newest->version) > 0))
                newest = current;
        }
    }
    if (xml.hasError())
        return std::nullopt;
    return newest;
}

int compareVersions(const QString &a, const QString &b)
{
    const QStringList left = a.split(u'.');
    const QStringList right = b.split(u'.');
    for (qsizetype i = 0; i < std::max(left.size(), right.size()); ++i) {
        const int x = left.value(i).toInt();
        const int y = right.value(i).toInt();
        if (x != y)
            return x < y ? -1 : 1;
    }
    return 0;
}

} // namespace lanternic::Appcast
