#include "ImageDimensions.h"

#include "Sealing/StoredFile.h"

#include <QCache>
#include <QImageReader>
#include <QLocale>

namespace Clipboard {

using namespace Qt::StringLiterals;

namespace {

// Several histories' worth of pictures; a label is a few dozen bytes.
constexpr qsizetype maxLabels = 2000;

std::optional<QString> readLabel(const QString& path)
{
    const auto file = ClipboardCore::StoredFile::open(path);
    const QSize size = file ? QImageReader(file.get()).size() : QSize();
    if (size.isEmpty())
        return std::nullopt;
    QLocale locale;
    locale.setNumberOptions(locale.numberOptions() & ~QLocale::NumberOptions(QLocale::OmitGroupSeparator));
    return locale.toString(size.width()) + u" \u00D7 "_s + locale.toString(size.height());
}

} // namespace

std::optional<QString> ImageDimensions::label(const QString& path)
{
    static QCache<QString, std::optional<QString>> labels(maxLabels);
    if (const auto* known = labels.object(path))
        return *known;
    std::optional<QString> label = readLabel(path);
    labels.insert(path, std::make_unique<std::optional<QString>>(label).release());
    return label;
}

} // namespace Clipboard
