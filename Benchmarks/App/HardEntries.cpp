#include "HardEntries.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QUuid>

using namespace Qt::StringLiterals;

namespace Clipboard::Benchmarks {

namespace {

constexpr qsizetype shown = 20'000; // characters of a preview
constexpr qsizetype mega = qsizetype{1024} * 1024;
constexpr qsizetype largestParsed = 262'144; // bytes that smart actions look into
constexpr double newest = 750'000'000;       // seconds since 2001

QString filled(const QString& unit, qsizetype length)
{
    return unit.repeated(length / unit.size() + 1).left(length);
}

QString jsonOf(qsizetype length)
{
    const QString member = u"{\"sku\": \"LMP-20\", \"qty\": 2, \"price\": 29.0},\n"_s;
    return u'[' + member.repeated(length / member.size() - 1) + u"0]"_s;
}

QString xmlOf(qsizetype length)
{
    const QString element = u"<item sku=\"LMP-20\"><qty>2</qty></item>"_s;
    return u"<order>"_s + element.repeated(length / element.size() - 1) + u"</order>"_s;
}

} // namespace

QList<HardEntry> hardEntries()
{
    const QString text = u"text"_s;
    const QString code = u"code"_s;
    return {
        {u"a short text"_s, text, u"hello"_s},
        {u"one word"_s, text, filled(u"m"_s, shown)},
        {u"one paragraph"_s, text, filled(u"some words "_s, shown)},
        {u"a line a character"_s, text, filled(u"x\n"_s, shown)},
        {u"Chinese"_s, text, filled(u"剪贴板历史记录管理器"_s, shown)},
        {u"Arabic"_s, text, filled(u"مرحبا بالعالم "_s, shown)},
        {u"Devanagari"_s, text, filled(u"नमस्ते दुनिया "_s, shown)},
        {u"families of emoji"_s, text, filled(u"👨‍👩‍👧‍👦 "_s, 4 * shown)},
        {u"marks on one letter"_s, text, u'a' + filled(u"\u0301"_s, shown)},
        {u"tabs"_s, text, filled(u"a\tb\t"_s, shown)},
        {u"control characters"_s, text, filled(u"\u0001\u0002\u001b[31m\u0007"_s, shown)},
        {u"left and right mixed"_s, text, filled(u"abc אבג 123 "_s, shown)},
        {u"JSON of 256 KiB"_s, text, jsonOf(largestParsed)},
        {u"XML of 256 KiB"_s, text, xmlOf(largestParsed)},
        {u"50 MB"_s, text, filled(u"All work and no play makes Jack a dull boy. "_s, 50 * mega)},
        {u"code on one line"_s, code, filled(u"var a=b?c:d;"_s, shown)},
        {u"code of many lines"_s, code, filled(u"    return value;\n"_s, 10 * mega)},
        {u"code in Chinese"_s, code, filled(u"变量 = 值; "_s, shown)},
        {u"a long link"_s, u"link"_s, u"https://example.org/?q="_s + filled(u"abc%20"_s, shown)},
        {u"a colour"_s, u"color"_s, u"#E2725B"_s},
        {u"a file"_s, u"file"_s, u"/usr/share/common-licenses/GPL-3"_s},
        {u"a picture that is gone"_s, u"image"_s, u"/nowhere/picture.png"_s},
    };
}

QByteArray historyOf(const QList<HardEntry>& entries)
{
    QJsonArray history;
    for (const HardEntry& entry : entries) {
        history.append(QJsonObject{{u"id"_s, QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper()},
                                   {u"type"_s, entry.type},
                                   {u"content"_s, entry.content},
                                   {u"createdAt"_s, newest - static_cast<double>(history.size())},
                                   {u"isPinned"_s, false}});
    }
    return QJsonDocument(history).toJson(QJsonDocument::Compact);
}

} // namespace Clipboard::Benchmarks
