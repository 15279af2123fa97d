// What the detectors write is read by programs that share no line with them.

#include "Actions/ContentDetectors.h"
#include "RandomDocuments.h"
#include "Support/WhiteSpace.h"

#include <QFile>
#include <QProcess>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>

#include <optional>

using namespace ClipboardCore;
using namespace Qt::StringLiterals;

namespace {

constexpr int documentCount = 300;
constexpr int damagedCount = 1500;

struct Outcome
{
    int exitCode = -1;
    QByteArray output;
    QByteArray errors;
};

Outcome run(const QString& program, const QStringList& arguments, const QByteArray& input = {})
{
    QProcess process;
    process.start(program, arguments);
    process.write(input);
    process.closeWriteChannel();
    if (!process.waitForFinished())
        return {-1, {}, process.errorString().toUtf8()};
    return {process.exitCode(), process.readAllStandardOutput(), process.readAllStandardError()};
}

/// Reads lines, each a text and what became of it, pretty and minified, as fields in Base64 ("-" is no result), and
/// ends with the first that it does not accept. Numbers are kept as their digits, members as a list.
const auto pythonReader = uR"(
import base64, json, sys

def refuse(word):
    raise ValueError(word)

def read(text, members=list):
    number = lambda digits: ('number', digits)
    return json.loads(text, parse_int=number, parse_float=number, parse_constant=refuse, object_pairs_hook=members)

def value(text):
    try:
        return read(text, lambda members: sorted(members, key=lambda member: member[0])) if text[:1] in '{[' else None
    except ValueError:
        return None

for line in sys.stdin:
    text, *results = [None if field == '-' else base64.b64decode(field[1:]).decode() for field in line.split()]
    expected = value(text)
    if [result and read(result) for result in results] != [expected, expected]:
        sys.exit(ascii([text] + results))
)"_s;

QByteArray field(const std::optional<Utf8Text>& text)
{
    return text ? '=' + text->utf8().toBase64() : "-"_ba;
}

/// Reads the documents from files 0, 1 …
Outcome xmllint(const QStringList& options, const QList<QByteArray>& documents)
{
    const QTemporaryDir folder;
    QStringList arguments = QStringList{u"-C"_s, folder.path(), u"xmllint"_s, u"--nonet"_s} + options;
    for (qsizetype i = 0; i < documents.size(); ++i) {
        arguments.append(QString::number(i));
        QFile file(folder.filePath(arguments.back()));
        if (!file.open(QFile::WriteOnly) || file.write(documents[i]) != documents[i].size())
            return {};
    }
    return run(u"env"_s, arguments);
}

} // namespace

class IndependentReadersTest final : public QObject
{
    Q_OBJECT
private slots:
    void jsonByPython();
    void xmlLayout();
    void damagedXML();
};

/// Also whether something is JSON at all: half of the documents are damaged.
void IndependentReadersTest::jsonByPython()
{
    RandomDocuments random(1);
    QByteArray lines;
    int refused = 0;
    for (int i = 0; i < documentCount + damagedCount; ++i) {
        QByteArray json = random.json();
        if (i >= documentCount)
            json = random.damaged(json, "{}[],:\"\\0e.-t \x01");
        const auto text = Utf8Text::fromUtf8(WhiteSpace::trimmed(json).toByteArray());
        const auto minified = ContentDetectors::minifiedJSON(text);
        QVERIFY(minified.has_value() || i >= documentCount);
        refused += minified ? 0 : 1;
        lines += field(text) + ' ' + field(ContentDetectors::prettyJSON(text)) + ' ' + field(minified) + '\n';
    }
    QVERIFY(refused > damagedCount / 4 && refused < damagedCount);
    const Outcome outcome = run(u"python3"_s, {u"-c"_s, pythonReader}, lines);
    QVERIFY2(outcome.exitCode == 0, outcome.errors.constData());
}

/// One node a line, indented by two blanks, mixed content as it is: xmllint does the same.
void IndependentReadersTest::xmlLayout()
{
    RandomDocuments random(5);
    QList<QByteArray> documents;
    QByteArray formatted;
    for (int i = 0; i < documentCount; ++i) {
        documents.append(random.xml());
        const auto result = ContentDetectors::formattedXML(Utf8Text::fromUtf8(documents.back()));
        QVERIFY2(result.has_value(), documents.back().constData());
        formatted += "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n" + result->utf8() + '\n';
    }
    const Outcome outcome = xmllint({u"--encode"_s, u"UTF-8"_s, u"--format"_s}, documents);
    const QList<QByteArray> expected = outcome.output.split('\n');
    const QList<QByteArray> actual = formatted.split('\n');
    QCOMPARE(actual, expected);
}

/// What is well-formed and what is not.
void IndependentReadersTest::damagedXML()
{
    RandomDocuments random(6);
    QList<QByteArray> documents;
    for (int i = 0; i < damagedCount; ++i)
        documents.append(Utf8Text::fromUtf8(random.damaged(random.xml(), "<>/&;'\"=?!-[] a1:")).utf8());
    const Outcome outcome = xmllint({u"--noout"_s}, documents);
    QSet<QByteArray> refused;
    for (const QByteArray& error : outcome.errors.split('\n'))
        if (error.contains(": parser error :"))
            refused.insert(error.first(error.indexOf(':')));
    QVERIFY(refused.size() > damagedCount / 4 && refused.size() < damagedCount);
    for (int i = 0; i < damagedCount; ++i) {
        const bool isWellFormed = !refused.contains(QByteArray::number(i));
        QVERIFY2(ContentDetectors::formattedXML(Utf8Text::fromUtf8(documents[i])).has_value() == isWellFormed,
                 documents[i].constData());
    }
}

QTEST_GUILESS_MAIN(IndependentReadersTest)
#include "IndependentReadersTest.moc"
