#include "RecordingRules.h"

#include "Rows.h"

using namespace Clipboard;
using namespace Qt::StringLiterals;

namespace {

void checkPattern(const char* pattern, const QString& text, bool isRefused)
{
    const RecordingRules rules({}, {}, {u"unrelated"_s, QString::fromLatin1(pattern)});
    QCOMPARE(rules.matches(text), isRefused);
}

} // namespace

class RecordingRulesTest final : public QObject
{
    Q_OBJECT
private slots:
    void refusesTexts()
    {
        const QString tail(100'000, u'-');
        checkRows(checkPattern, {{"^\\d{6}$", u"123456"_s, true},
                                 {"^\\d{6}$", u"1234567"_s, false},
                                 {"(?i)PRIVATE key", u"begin private key"_s + tail, true},
                                 {"secret", tail + u"secret"_s, false}, // further in than is searched
                                 {"^\\w+$", u"Größe"_s, true},
                                 // Nobody can say without more steps than there are: then it is not kept.
                                 {"(a|a)+$", QString(40, u'a') + u'!', true}});
    }
    void refusesTypesAndApplications()
    {
        const RecordingRules rules({u"text"_s}, {u"org.KeePass"_s}, {});
        QVERIFY(rules.allows(ClipboardCore::ClipType::text) && !rules.allows(ClipboardCore::ClipType::image));
        QVERIFY(rules.allowsFrom({}) && rules.allowsFrom(u"org.gedit"_s) && !rules.allowsFrom(u"ORG.keepass"_s));
        QVERIFY(RecordingRules().allows(ClipboardCore::ClipType::image) && !RecordingRules().hasPatterns());
    }
};

QTEST_GUILESS_MAIN(RecordingRulesTest)
#include "RecordingRulesTest.moc"
