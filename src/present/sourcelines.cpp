#include "present/sourcelines.h"

#include "model/feedtext.h"

#include <QCoreApplication>

namespace lanternic::SourceLines {

using namespace Qt::StringLiterals;

namespace {

struct Text {
    Q_DECLARE_TR_FUNCTIONS(SourceRegistry)
};

} // namespace

QString kindText(const LineReading &reading)
{
    switch (reading.kind) {
    case LineReading::Kind::feed:
        return Text::tr("feed");
    case LineReading::Kind::updog:
        return u"Updog"_s;
    case LineReading::Kind::platform:
        if (Platforms::of(reading.platform).readFeed)
            return Text::tr("feed");
        return Platforms::of(reading.platform).displayName;
    case LineReading::Kind::probe:
        break;
    }
    return Text::tr("to be probed");
}

QString ignoredText(const LineReading &reading)
{
    switch (reading.ignored) {
    case LineReading::Ignored::noEquals:
        return Text::tr("no \u201c=\u201d");
    case LineReading::Ignored::noLabel:
        return Text::tr("no label");
    case LineReading::Ignored::noAddress:
        return Text::tr("no address");
    case LineReading::Ignored::unsupportedScheme:
        return Text::tr("%1:// is not supported").arg(reading.scheme);
    case LineReading::Ignored::noHost:
        break;
    }
    return Text::tr("no host");
}

QString describe(const LineReading &reading)
{
    // The label and the address are the user's own text, shown in a terminal or a tooltip:
    // cleaned like feed text, and given to one arg() call so that a "%1" in them stays as typed.
    if (!reading.source)
        return Text::tr("line %1: ignored \u2014 %2")
            .arg(QString::number(reading.line), ignoredText(reading));
    const QString text =
        Text::tr("line %1: %2 \u2192 %3 (%4)")
            .arg(QString::number(reading.line), FeedText::clean(reading.label),
                 FeedText::clean(reading.source->url.toString()), kindText(reading));
    return reading.sameAs > 0
               ? Text::tr("%1, the same feed as line %2").arg(text, QString::number(reading.sameAs))
               : text;
}

} // namespace lanternic::SourceLines
