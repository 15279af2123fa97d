#include "EntryPrinter.h"

#include "Terminal.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>

namespace Clipboard::Command {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype shortID = 8;
// Where a terminal's tab stops put the preview.
constexpr qsizetype columnsBeforePreview = 40;

bool isShortID(const QString& word)
{
    const auto isDigit = [](QChar c) { return c.isDigit() || (c >= u'a' && c <= u'f'); };
    return word.size() == shortID && std::ranges::all_of(word, isDigit);
}

/// DEL and C1 are the controls that JSON leaves as they are. They stand in strings alone.
QString withEscapedControls(const QByteArray& json)
{
    QString escaped;
    const QString text = QString::fromUtf8(json);
    for (const QChar c : text) {
        if (c.unicode() >= 0x7F && c.unicode() < 0xA0)
            escaped += u"\\u%1"_s.arg(c.unicode(), 4, 16, QChar(u'0'));
        else
            escaped += c;
    }
    return escaped;
}

} // namespace

QString entryLine(const Bus::BusEntry& entry)
{
    QString preview = entry.preview;
    if (const qsizetype columns = Terminal::columns(); columns > columnsBeforePreview)
        preview.truncate(columns - columnsBeforePreview);
    const QString place = QString::number(entry.index) + u'\t' + entry.id.first(shortID);
    const QString kind = entry.type + u'\t' + (entry.isPinned ? u'*' : u'-');
    if (!Terminal::hasColor())
        return place + u'\t' + kind + u'\t' + preview;
    return u"\033[2m%1\033[0m\t\033[36m%2\033[0m\t%3"_s.arg(place, kind, preview);
}

QJsonObject entryObject(const Bus::BusEntry& entry)
{
    const auto orNull = [](const QString& text) { return text.isEmpty() ? QJsonValue() : QJsonValue(text); };
    return {{u"index"_s, static_cast<qint64>(entry.index)},
            {u"id"_s, entry.id},
            {u"type"_s, entry.type},
            {u"pinned"_s, entry.isPinned},
            {u"copiedAt"_s, QDateTime::fromMSecsSinceEpoch(entry.copiedAt, Qt::UTC).toString(Qt::ISODateWithMs)},
            {u"sourceApp"_s, orNull(entry.sourceApp)},
            {u"bundleID"_s, orNull(entry.bundleID)},
            {u"size"_s, static_cast<qint64>(entry.size)},
            {u"preview"_s, entry.preview},
            {u"furtherFiles"_s, static_cast<qint64>(entry.furtherFiles)}};
}

QString nameInLine(const QString& line)
{
    const QStringList words = line.split(u'\t');
    if (words.size() > 1 && isShortID(words.at(1)))
        return words.at(1);
    return line.section(u' ', 0, 0, QString::SectionSkipEmpty).section(u'\t', 0, 0);
}

QString compactJSON(const QJsonObject& object)
{
    return withEscapedControls(QJsonDocument(object).toJson(QJsonDocument::Compact));
}

QString compactJSON(const QJsonArray& array)
{
    return withEscapedControls(QJsonDocument(array).toJson(QJsonDocument::Compact));
}

} // namespace Clipboard::Command
