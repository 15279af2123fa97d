#include "TitleText.h"

#include <QStringDecoder>

#include <algorithm>

namespace Clipboard {

namespace {

/// Numbered entities from 128 to 159 mean what windows-1252 has there (html.spec.whatwg.org, "numeric character
/// reference end state"); pages of old authoring tools are full of them.
QChar withoutC1(QChar character)
{
    if (character < QChar(0x80) || character > QChar(0x9f))
        return character;
    QStringDecoder decoder("windows-1252");
    const QString decoded = decoder.decode(QByteArray(1, character.toLatin1()));
    return decoded.isEmpty() ? character : decoded.front();
}

} // namespace

std::optional<QString> tidiedTitle(QString title)
{
    std::ranges::transform(title, title.begin(), withoutC1);
    title.removeIf([](QChar c) { return c.category() == QChar::Other_Control && !c.isSpace(); });
    title = title.simplified();
    if (title.isEmpty() || title.size() > maxTitleLength)
        return {};
    return title;
}

} // namespace Clipboard
