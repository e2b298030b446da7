#include "model/feedtext.h"
#include "model/newswords.h"
#include "model/sourceresult.h"
#include "model/urls.h"

#include <QTest>

using namespace lanternic;
using namespace Qt::StringLiterals;

class TestModel : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void feedText_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("shown");
        QTest::newRow("plain") << u"GitHub \u2014 API"_s << u"GitHub \u2014 API"_s;
        QTest::newRow("forged report line")
            << u"ok\n\u2713 GitHub  Operational"_s << u"ok \u2713 GitHub  Operational"_s;
        QTest::newRow("controls and separators")
            << u"a\rb\vc\td\u0000e\u007ff\u0085g\u2028h\u2029i"_s << u"a b c d e f g h i"_s;
        QTest::newRow("escape sequence") << u"\u001b]0;owned\u0007x"_s << u" ]0;owned x"_s;
        QTest::newRow("bidi overrides and isolates")
            << u"\u202egnp.exe\u202c \u2066x\u2069"_s << u"gnp.exe x"_s;
        QTest::newRow("only bidi controls, then text")
            << QString(5000, QChar(0x202e)) + u"tail"_s << u"tail"_s;
        QTest::newRow("only bidi controls") << QString(5000, QChar(0x2066)) << QString();
        QTest::newRow("lone surrogates, a pair kept") << QString::fromUtf16(u"\xd800"
                                                                            u"a"
                                                                            u"\xdc00\xd83d\xde00",
                                                                            5)
                                                      << QString::fromUtf16(u"\xfffd"
                                                                            u"a"
                                                                            u"\xfffd\xd83d\xde00",
                                                                            5);
        QTest::newRow("high surrogate last") << u"x"_s + QChar(0xdbff) << u"x\ufffd"_s;
        QTest::newRow("cut with an ellipsis")
            << QString(400, u'a') << QString(299, u'a') + u"\u2026"_s;
        // A flag is two code points and four code units: never split.
        QTest::newRow("cut between graphemes")
            << QString(298, u'a') + u"\U0001F1E9\U0001F1EA"_s << QString(298, u'a') + u"\u2026"_s;
        QTest::newRow("one huge cluster") << u"e"_s + QString(100000, QChar(0x301))
                                          << u"e"_s + QString(298, QChar(0x301)) + u"\u2026"_s;
    }

    // Every platform's news words, as Statuspage writes them.
    void newsWords_data()
    {
        QTest::addColumn<QString>("word");
        QTest::addColumn<QString>("stage");
        QTest::addColumn<QString>("impact");
        QTest::addColumn<QString>("maintenance");
        QTest::newRow("Statuspage")
            << u"identified"_s << u"identified"_s << QString() << u"scheduled"_s;
        QTest::newRow("Instatus") << u"INVESTIGATING"_s << u"investigating"_s << QString()
                                  << u"scheduled"_s;
        QTest::newRow("Instatus impact")
            << u"PARTIALOUTAGE"_s << u"investigating"_s << u"major"_s << u"scheduled"_s;
        QTest::newRow("Instatus maintenance")
            << u"INPROGRESS"_s << u"investigating"_s << QString() << u"in_progress"_s;
        QTest::newRow("incident.io")
            << u"full_outage"_s << u"investigating"_s << u"critical"_s << u"scheduled"_s;
        QTest::newRow("Cachet") << u"3"_s << u"monitoring"_s << QString() << u"scheduled"_s;
        QTest::newRow("Google") << u"SERVICE_DISRUPTION"_s << u"investigating"_s << u"major"_s
                                << u"scheduled"_s;
        QTest::newRow("words with spaces")
            << u"Under Maintenance"_s << u"investigating"_s << u"maintenance"_s << u"scheduled"_s;
        QTest::newRow("over") << u"Resolved"_s << u"resolved"_s << QString() << u"completed"_s;
    }

    void newsWords()
    {
        QFETCH(QString, word);
        QTEST(NewsWords::stage(word), "stage");
        QTEST(NewsWords::impact(word), "impact");
        QTEST(NewsWords::maintenanceStatus(word), "maintenance");
    }

    // A common word, read as text or as a document's UTF-8, is the one shared copy of it; any
    // other word is its own text.
    void sharedFeedWords()
    {
        const QString shared = sharedFeedWord(u"partial_outage"_s);
        QCOMPARE(shared, u"partial_outage"_s);
        QVERIFY(sharedFeedWordFromUtf8("partial_outage"_ba).isSharedWith(shared));
        QVERIFY(
            sharedFeedWord(u"verifying"_s).isSharedWith(sharedFeedWordFromUtf8("verifying"_ba)));
        QCOMPARE(sharedFeedWordFromUtf8("\xc3\xa0_moiti\xc3\xa9"_ba), u"\u00e0_moiti\u00e9"_s);
    }

    // A component's id is the same text however it was made, and reads back whole. A key as a
    // document writes it (UTF-8, invalid sequences replaced) makes the same id.
    void componentIds_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addColumn<QString>("key");
        QTest::addColumn<QByteArray>("keyUtf8");
        QTest::addColumn<QString>("id");
        QTest::newRow("plain") << u"github"_s << u"api"_s << "api"_ba << u"github::api"_s;
        QTest::newRow("beyond ASCII")
            << u"statut.exemple.fr"_s << u"caf\u00e9 \U0001F600"_s
            << u"caf\u00e9 \U0001F600"_s.toUtf8() << u"statut.exemple.fr::caf\u00e9 \U0001F600"_s;
        QTest::newRow("lone surrogate")
            << u"s"_s << u"k"_s + QChar(0xd800) << "k\xff"_ba << u"s::k\ufffd"_s;
        QTest::newRow("a pair kept, a lone one after it replaced")
            << u"s"_s << u"\U0001F600"_s + QChar(0xdc00) << "\xf0\x9f\x98\x80\xff"_ba
            << u"s::\U0001F600\ufffd"_s;
        QTest::newRow("source with a lone surrogate")
            << u"s"_s + QChar(0xdc00) << u"k"_s << "k"_ba << u"s\ufffd::k"_s;
        QTest::newRow("key with its own colons")
            << u"s"_s << u"a::b"_s << "a::b"_ba << u"s::a::b"_s;
    }

    void componentIds()
    {
        QFETCH(QString, source);
        QFETCH(QString, key);
        QFETCH(QByteArray, keyUtf8);
        QFETCH(QString, id);
        const ComponentId made(source, key);
        QCOMPARE(made.toString(), id);
        QVERIFY(made == ComponentId(id));
        QCOMPARE(qHash(made), qHash(ComponentId(id)));
        QVERIFY(!(made == ComponentId(id + u'x')));
        QCOMPARE(ComponentIds(source)(keyUtf8).toString(), id);
    }

    // A feed's link is kept as its text and reads back as the address it names; anything but
    // http or https with a host is no link, and a page's own address falls back to home.
    void webLinks_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("link");
        QTest::newRow("https") << u"https://stspg.io/x1?a=b#c"_s << true;
        QTest::newRow("http, upper case") << u"HTTP://Status.Example.com/"_s << true;
        QTest::newRow("other scheme") << u"ftp://status.example.com/"_s << false;
        QTest::newRow("script") << u"javascript:alert(1)"_s << false;
        QTest::newRow("no host") << u"https:///path"_s << false;
        QTest::newRow("not strict") << u"https://status.example.com/a b"_s << false;
        QTest::newRow("empty") << QString() << false;
        // Plain addresses are known links without a parse; the rest are parsed.
        QTest::newRow("plain, port and path")
            << u"http://status.example.com:8080/api/v2/summary.json"_s << true;
        QTest::newRow("port too large") << u"http://status.example.com:70000/"_s << false;
        QTest::newRow("label of 64") << u"https://"_s + QString(64, u'a') + u".com/"_s << false;
        QTest::newRow("hyphen ending a label") << u"https://status-.example.com/"_s << false;
        QTest::newRow("ACE label, trailing dot") << u"https://xn--caf-dma.example./"_s << true;
    }

    void webLinks()
    {
        QFETCH(QString, text);
        QFETCH(bool, link);
        const QUrl home(u"https://home.example.com"_s);
        const std::optional<WebLink> read = WebLink::parse(text);
        QCOMPARE(read.has_value(), link);
        QCOMPARE(pageAddress(home, text), link ? *read : WebLink(home));
        if (!link)
            return;
        const QUrl parsed(text, QUrl::StrictMode);
        QCOMPARE(read->url(), parsed);
        QCOMPARE(read->toString(QUrl::FullyEncoded), parsed.toString(QUrl::FullyEncoded));
        QCOMPARE(read->toString(), parsed.toString());
        QVERIFY(*read == WebLink(parsed));
        QVERIFY(!(*read == WebLink(home)));
        QCOMPARE(pageAddress(parsed, text).url(), parsed);
    }

    void feedText()
    {
        QFETCH(QString, text);
        QTEST(FeedText::clean(text), "shown");
    }
};

QTEST_GUILESS_MAIN(TestModel)
#include "test_model.moc"
