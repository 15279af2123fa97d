#include "SelectionText.h"

#include "Support/Utf8.h"

#include <QString>
#include <QStringDecoder>

namespace Clipboard::SelectionText {

namespace {

namespace Utf8 = ClipboardCore::Utf8;

QByteArray fromLatin1(QByteArrayView bytes)
{
    return QString::fromLatin1(bytes).toUtf8();
}

/// Latin-1 with stretches of UTF-8 between ESC % G and ESC % @ (the X Consortium's "Compound Text Encoding").
std::optional<QByteArray> fromCompoundText(QByteArrayView bytes)
{
    constexpr QByteArrayView utf8Begin = "\x1b%G";
    constexpr QByteArrayView utf8End = "\x1b%@";
    QByteArray text;
    while (!bytes.isEmpty()) {
        const qsizetype escape = bytes.indexOf('\x1b');
        if (escape < 0)
            return text + fromLatin1(bytes);
        text += fromLatin1(bytes.first(escape));
        bytes = bytes.sliced(escape);
        if (!bytes.startsWith(utf8Begin))
            return {};
        bytes = bytes.sliced(utf8Begin.size());
        const qsizetype end = bytes.indexOf(utf8End);
        text += Utf8::repaired((end < 0 ? bytes : bytes.first(end)).toByteArray());
        bytes = end < 0 ? QByteArrayView() : bytes.sliced(end + utf8End.size());
    }
    return text;
}

} // namespace

std::optional<QByteArray> decode(QByteArrayView type, const QByteArray& bytes)
{
    qsizetype length = bytes.size();
    while (length > 0 && bytes.at(length - 1) == '\0')
        --length;
    QByteArray text = bytes;
    text.truncate(length);
    if (type == "STRING")
        return fromLatin1(text);
    if (type == "COMPOUND_TEXT")
        return fromCompoundText(text);
    if (type == "UTF8_STRING" || type.compare("text/plain;charset=utf-8", Qt::CaseInsensitive) == 0)
        return Utf8::repaired(text);
    // No charset named: UTF-8 by today's custom, Latin-1 when it cannot be that.
    if (type == "text/plain" || type == "TEXT")
        return Utf8::isValid(text) ? text : fromLatin1(text);
    return {};
}

QByteArray latin1(const QByteArray& utf8)
{
    // Piece by piece: what a large text takes as UTF-16 on the way is four times the result.
    constexpr qsizetype pieceBytes = qsizetype{64} * 1024;
    QStringDecoder decoder(QStringDecoder::Utf8);
    QByteArray text;
    text.reserve(utf8.size());
    for (qsizetype at = 0; at < utf8.size(); at += pieceBytes) {
        const QString piece = decoder.decode(QByteArrayView(utf8).sliced(at, qMin(pieceBytes, utf8.size() - at)));
        text += piece.toLatin1();
    }
    return text;
}

} // namespace Clipboard::SelectionText
