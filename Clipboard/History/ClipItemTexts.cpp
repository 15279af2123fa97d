#include "ClipItemTexts.h"

#include "History/CopiedFile.h"
#include "History/RelativeTime.h"
#include "ImageDimensions.h"
#include "Support/Graphemes.h"
#include "Support/Utf8.h"

#include <QCoreApplication>
#include <QStringList>

namespace Clipboard {

using ClipboardCore::ClipItem;
using ClipboardCore::ClipType;
using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype titleCharacters = 200;

// Shown whole, for all a reader can tell: beyond what any browser takes as an address.
constexpr qsizetype maxWholeTitleBytes = qsizetype{64} * 1024;

/// The texts, as the translation context "ClipItem".
struct Text
{
    Q_DECLARE_TR_FUNCTIONS(ClipItem)
};

/// A relative time in short, its unit translated: "5m".
QString shortSpan(const QString& label)
{
    const QString count = label.chopped(1);
    switch (label.back().unicode()) {
    case u'm':
        return Text::tr("%1m").arg(count);
    case u'h':
        return Text::tr("%1h").arg(count);
    default:
        return Text::tr("%1d").arg(count);
    }
}

QString spokenAge(const ClipItem& item, double now)
{
    const QString age = ClipboardCore::RelativeTime::label(item.createdAt, now);
    if (age == "now"_L1)
        return Text::tr("copied now");
    return age == "yesterday"_L1 ? Text::tr("copied yesterday") : Text::tr("copied %1").arg(shortSpan(age));
}

QString wholeTitle(const ClipItem& item)
{
    return ClipboardCore::Utf8::toString(ClipboardCore::Utf8::prefix(item.content.utf8(), maxWholeTitleBytes));
}

/// Up to the first line feed that stands alone: a carriage return and its line feed are one character, and not that
/// one.
QString firstLine(const QString& text)
{
    qsizetype end = text.indexOf(u'\n');
    while (end > 0 && text.at(end - 1) == u'\r')
        end = text.indexOf(u'\n', end + 1);
    return end < 0 ? text : text.first(end);
}

} // namespace

ClipTypeMeta meta(ClipType type)
{
    switch (type) {
    case ClipType::text:
        return {Text::tr("Text"), QColor::fromRgbF(0.557F, 0.608F, 0.71F)};
    case ClipType::link:
        return {Text::tr("Links"), QColor::fromRgbF(0.239F, 0.545F, 1.0F)};
    case ClipType::image:
        return {Text::tr("Images"), QColor::fromRgbF(0.69F, 0.424F, 1.0F)};
    case ClipType::color:
        return {Text::tr("Colors"), QColor::fromRgbF(1.0F, 0.624F, 0.263F)};
    case ClipType::code:
        return {Text::tr("Code"), QColor::fromRgbF(0.204F, 0.827F, 0.6F)};
    case ClipType::file:
        return {Text::tr("Files"), QColor::fromRgbF(0.176F, 0.831F, 0.749F)};
    }
    Q_UNREACHABLE();
}

QString badge(ClipType type)
{
    switch (type) {
    case ClipType::text:
        return Text::tr("text");
    case ClipType::link:
        return Text::tr("link");
    case ClipType::image:
        return Text::tr("image");
    case ClipType::color:
        return Text::tr("color");
    case ClipType::code:
        return Text::tr("code");
    case ClipType::file:
        return Text::tr("file");
    }
    Q_UNREACHABLE();
}

QString rowTitle(const ClipItem& item)
{
    switch (item.type) {
    case ClipType::text:
        return ClipboardCore::Graphemes::prefix(item.content, titleCharacters).text.replace(u'\n', u' ');
    case ClipType::link:
        return wholeTitle(item);
    case ClipType::image:
        return ImageDimensions::label(item.content.toString()).value_or(Text::tr("Image"));
    case ClipType::color:
        return wholeTitle(item).toUpper();
    case ClipType::code:
        return firstLine(ClipboardCore::Graphemes::prefix(item.content, titleCharacters).text);
    case ClipType::file:
        return ClipboardCore::CopiedFile::shownName(item.content.utf8());
    }
    Q_UNREACHABLE();
}

QString accessibilityLabel(const ClipItem& item, double now)
{
    QString title = rowTitle(item);
    if (item.furtherFiles > 0)
        title = Text::tr("%1 and %n more file(s)", nullptr, item.furtherFiles).arg(title);
    QStringList parts{meta(item.type).label, title};
    if (item.sourceApp)
        parts.append(Text::tr("from %1").arg(*item.sourceApp));
    parts.append(spokenAge(item, now));
    if (item.isPinned)
        parts.append(Text::tr("pinned"));
    return parts.join(u", "_s);
}

QString ageLabel(const ClipItem& item, double now)
{
    const QString age = ClipboardCore::RelativeTime::label(item.createdAt, now);
    if (age == "now"_L1)
        return Text::tr("just now");
    return age == "yesterday"_L1 ? Text::tr("yesterday") : Text::tr("%1 ago").arg(shortSpan(age));
}

} // namespace Clipboard
