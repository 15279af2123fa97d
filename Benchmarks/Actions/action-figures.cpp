// What finding out costs: the list of actions and each detector at the largest text they look at, and a QR code.
// One line each: name, value, unit, goal, separated by tabs.

#include "../Figures.h"
#include "Actions/ContentDetectors.h"
#include "Actions/SmartActions.h"
#include "QRCode.h"

#include <QCoreApplication>

#include <random>

using namespace ClipboardCore;
using namespace Qt::StringLiterals;
using Figures::median;
using Figures::report;

namespace {

constexpr qsizetype largest = ContentDetectors::sizeLimit;
int runs = 15;

/// `start`, as many of `piece` as fit into `size`, `end`.
QByteArray filled(const QByteArray& start, const QByteArray& piece, const QByteArray& end, qsizetype size = largest)
{
    return start + piece.repeated((size - start.size() - end.size()) / piece.size()) + end;
}

QByteArray unorderedMembers()
{
    std::minstd_rand random(1);
    QByteArray json = "{\"\":0";
    while (json.size() < largest - 40)
        json += ",\"" + QByteArray::number(random() % 1000) + "\":1";
    return json + '}';
}

QByteArray token()
{
    const QByteArray claims = filled("{\"a\":[1", ",1", "]}", largest / 4 * 3 - 6);
    return "a." + claims.toBase64(QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals) + ".c";
}

const QByteArray prose = filled("", "The quick brown fox.\n", "");
const QByteArray integers = filled("[1", ",1", "]");
const QByteArray records =
    filled("[0", ",\n {\"id\": 17, \"name\": \"user\", \"tags\": [\"a\", \"b\"], \"on\": true}", "]");
const QByteArray nestedArrays = filled("[0", ',' + QByteArray(511, '[') + QByteArray(511, ']'), "]");
const QByteArray emptyElements = filled("<a>", "<b/>", "</a>");
const QByteArray attributes = filled("<a>", "<b c='d' e='f'/>", "</a>");
const QByteArray nestedElements = filled(QByteArray("<a>").repeated(511), "<b/>", QByteArray("</a>").repeated(511));
const QByteArray documentType = filled("<!DOCTYPE a [", "<!ELEMENT b ANY>", "]><a/>");
const QByteArray escapes = filled("", "%41", "");
const QByteArray parameters = filled("https://a.b/?utm_x=1", "&", "");

void measureList(const QString& name, ClipType type, const QByteArray& content)
{
    ClipItem item;
    item.type = type;
    item.content = Utf8Text::fromUtf8(content);
    report(u"actions of 256 KiB: "_s + name, median(runs, [&] { static_cast<void>(SmartActions::actions(item)); }),
           u"≤ 10"_s);
}

void measureLists()
{
    measureList(u"text, prose"_s, ClipType::text, prose);
    measureList(u"text, JSON records"_s, ClipType::text, records);
    measureList(u"text, JSON of short numbers"_s, ClipType::text, integers);
    measureList(u"text, JSON of unordered members"_s, ClipType::text, unorderedMembers());
    measureList(u"text, JSON nested 512 deep"_s, ClipType::text, nestedArrays);
    measureList(u"text, Base64"_s, ClipType::text, filled("", "QUJD", ""));
    measureList(u"text, percent escapes"_s, ClipType::text, escapes);
    measureList(u"text, a token"_s, ClipType::text, token());
    measureList(u"text, full stops with marks"_s, ClipType::text, filled("", ".\xCC\x81", ""));
    measureList(u"text, blanks"_s, ClipType::text, QByteArray(largest, ' '));
    measureList(u"text, blanks beyond ASCII"_s, ClipType::text, filled("", "\xC2\xA0", ""));
    measureList(u"link"_s, ClipType::link, parameters);
    measureList(u"color"_s, ClipType::color, filled("#", "f", ""));
    measureList(u"image"_s, ClipType::image, filled("", "/a", ""));
    measureList(u"file"_s, ClipType::file, filled("", "/a", ""));
    measureList(u"code, prose"_s, ClipType::code, prose);
    measureList(u"code, JSON of short numbers"_s, ClipType::code, integers);
    measureList(u"code, XML of empty elements"_s, ClipType::code, emptyElements);
    measureList(u"code, XML of attributes"_s, ClipType::code, attributes);
    measureList(u"code, XML nested 512 deep"_s, ClipType::code, nestedElements);
    measureList(u"code, XML with a document type"_s, ClipType::code, documentType);
    measureList(u"code, nothing but <"_s, ClipType::code, QByteArray(largest, '<'));
}

template <typename Detector>
void measureDetector(const QString& name, Detector detector, const QByteArray& content)
{
    const Utf8Text text = Utf8Text::fromUtf8(content);
    report(u"detector at 256 KiB: "_s + name, median(runs, [&] { static_cast<void>(detector(text)); }), u"-"_s);
}

void measureDetectors()
{
    namespace Detectors = ContentDetectors;
    measureDetector(u"pretty JSON"_s, Detectors::prettyJSON, integers);
    measureDetector(u"minified JSON"_s, Detectors::minifiedJSON, integers);
    measureDetector(u"Base64"_s, Detectors::base64Decoded, filled("", "QUJD", ""));
    measureDetector(u"percent escapes"_s, Detectors::urlDecoded, escapes);
    measureDetector(
        u"time"_s, [](const Utf8Text& text) { return Detectors::epochDate(text, QTimeZone::utc()); },
        QByteArray("1700000000").leftJustified(largest, ' '));
    measureDetector(u"JWT"_s, Detectors::jwtPayload, token());
    measureDetector(u"tracking parameters"_s, Detectors::strippedTrackers, parameters);
    measureDetector(u"slug"_s, Detectors::slug, QByteArray("a title").leftJustified(largest, ' '));
    measureDetector(u"XML"_s, Detectors::formattedXML, attributes);
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    if (QCoreApplication::arguments().contains(u"--short"_s))
        runs = 1;
    measureLists();
    measureDetectors();
    report(u"QR code of 1024 bytes"_s,
           median(runs, [] { static_cast<void>(Clipboard::QRCode::image(prose.first(1024))); }), u"≤ 16"_s);
    return 0;
}
