#include "model/newswords.h"

#include <QHash>

namespace lanternic::NewsWords {

using namespace Qt::StringLiterals;

namespace {

// Lower case, with spaces, dashes and underscores taken out: "Partial Outage",
// "partial_outage" and "PARTIALOUTAGE" are one word.
QString key(QStringView word)
{
    QString folded;
    folded.reserve(word.size());
    for (const QChar c : word) {
        if (c != u' ' && c != u'_' && c != u'-')
            folded.append(c.toLower());
    }
    return folded;
}

QString lookUp(const QHash<QString, QString> &words, QStringView word, const QString &otherwise)
{
    return words.value(key(word), otherwise);
}

} // namespace

QString stage(QStringView word)
{
    // Cachet numbers its stages from 1 (0 is a scheduled incident, which is not open).
    static const QHash<QString, QString> words{
        {u"investigating"_s, u"investigating"_s},
        {u"1"_s, u"investigating"_s},
        {u"identified"_s, u"identified"_s},
        {u"2"_s, u"identified"_s},
        {u"monitoring"_s, u"monitoring"_s},
        {u"watching"_s, u"monitoring"_s},
        {u"3"_s, u"monitoring"_s},
        {u"resolved"_s, u"resolved"_s},
        {u"fixed"_s, u"resolved"_s},
        {u"4"_s, u"resolved"_s},
        {u"postmortem"_s, u"resolved"_s},
        {u"completed"_s, u"resolved"_s},
        {u"closed"_s, u"resolved"_s},
    };
    return lookUp(words, word, u"investigating"_s);
}

QString impact(QStringView word)
{
    static const QHash<QString, QString> words{
        {u"none"_s, u"none"_s},
        {u"minor"_s, u"minor"_s},
        {u"low"_s, u"minor"_s},
        {u"degraded"_s, u"minor"_s},
        {u"degradedperformance"_s, u"minor"_s},
        {u"serviceinformation"_s, u"minor"_s},
        {u"major"_s, u"major"_s},
        {u"medium"_s, u"major"_s},
        {u"partialoutage"_s, u"major"_s},
        {u"servicedisruption"_s, u"major"_s},
        {u"critical"_s, u"critical"_s},
        {u"high"_s, u"critical"_s},
        {u"majoroutage"_s, u"critical"_s},
        {u"fulloutage"_s, u"critical"_s},
        {u"outage"_s, u"critical"_s},
        {u"serviceoutage"_s, u"critical"_s},
        {u"maintenance"_s, u"maintenance"_s},
        {u"undermaintenance"_s, u"maintenance"_s},
    };
    return lookUp(words, word, QString());
}

QString maintenanceStatus(QStringView word)
{
    static const QHash<QString, QString> words{
        {u"scheduled"_s, u"scheduled"_s},    {u"notstartedyet"_s, u"scheduled"_s},
        {u"upcoming"_s, u"scheduled"_s},     {u"planned"_s, u"scheduled"_s},
        {u"inprogress"_s, u"in_progress"_s}, {u"ongoing"_s, u"in_progress"_s},
        {u"active"_s, u"in_progress"_s},     {u"started"_s, u"in_progress"_s},
        {u"verifying"_s, u"verifying"_s},    {u"completed"_s, u"completed"_s},
        {u"complete"_s, u"completed"_s},     {u"finished"_s, u"completed"_s},
        {u"resolved"_s, u"completed"_s},
    };
    return lookUp(words, word, u"scheduled"_s);
}

} // namespace lanternic::NewsWords
