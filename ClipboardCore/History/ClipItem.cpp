#include "History/ClipItem.h"

#include "History/CopiedFile.h"
#include "Support/CanonicalText.h"
#include "Support/Graphemes.h"
#include "Support/UrlHost.h"

#include <QCoreApplication>

#include <chrono>

using namespace Qt::StringLiterals;

namespace ClipboardCore {

namespace {

constexpr qsizetype snippetLength = 32;
// Cut before line feeds are replaced, so that the replacement never sees more than this.
constexpr qsizetype snippetSource = 64;

/// The text that a snippet is cut from, or as much of its beginning as the cut needs.
QString snippetBase(const ClipItem& item)
{
    const QByteArrayView content = item.content.utf8();
    switch (item.type) {
    case ClipType::text: {
        QString text = Graphemes::prefixOfUtf8(content, snippetSource).text;
        return text.replace(u'\n', u' ');
    }
    case ClipType::link:
        if (const auto host = urlHost(content))
            return *host;
        return Graphemes::prefixOfUtf8(content, snippetSource).text;
    case ClipType::image:
        return QCoreApplication::translate("ClipItem", "image");
    case ClipType::color:
        return Graphemes::prefixOfUtf8(content, snippetSource).text.toUpper();
    case ClipType::code:
        return QCoreApplication::translate("ClipItem", "code snippet");
    case ClipType::file:
        return CopiedFile::shownName(content);
    }
    Q_UNREACHABLE();
}

bool equal(const std::optional<QString>& a, const std::optional<QString>& b)
{
    if (a.has_value() != b.has_value())
        return false;
    return !a || *a == *b || CanonicalText::equal(a->toUtf8(), b->toUtf8());
}

} // namespace

bool operator==(const ClipItem& a, const ClipItem& b)
{
    return a.id == b.id && a.type == b.type && a.createdAt == b.createdAt && a.isPinned == b.isPinned &&
           equal(a.sourceApp, b.sourceApp) && equal(a.bundleID, b.bundleID) && a.content == b.content;
}

QString ClipItem::snippet() const
{
    const QString base = snippetBase(*this);
    const QStringView shown = Graphemes::prefix(QStringView(base), snippetLength);
    const QString clipped = shown.toString() + (shown.size() < base.size() ? u"…"_s : QString());
    return QCoreApplication::translate("ClipItem", "“%1”").arg(clipped);
}

double currentTime()
{
    using namespace std::chrono;
    // 2001-01-01 00:00:00 UTC, in seconds of Unix time.
    constexpr double referenceDate = 978307200;
    return duration<double>(system_clock::now().time_since_epoch()).count() - referenceDate;
}

} // namespace ClipboardCore
