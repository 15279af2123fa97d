#include "HistoryListModel.h"

#include "ClipItemTexts.h"
#include "Fonts.h"
#include "HistoryViewModel.h"

#include <QFontMetricsF>

#include <algorithm>
#include <memory>

using namespace Qt::StringLiterals;
using ClipboardCore::ClipItem;
using ClipboardCore::ClipType;

namespace Clipboard {

namespace {

// More than a few screens of rows; a title is some dozen characters once it is elided.
constexpr int cachedTitles = 512;
// No row shows more, in whatever font; measuring the rest of a long link would take longer than drawing the list.
constexpr qsizetype measuredCharacters = 256;

QString onOneLine(QString text)
{
    for (QChar& character : text) {
        const auto category = character.category();
        if (category == QChar::Other_Control || category == QChar::Separator_Line ||
            category == QChar::Separator_Paragraph)
            character = u' ';
    }
    return text;
}

HistoryListModel::Title makeTitle(const ClipItem& item, qreal width)
{
    const bool isCode = item.type == ClipType::code;
    const bool isLink = item.type == ClipType::link;
    QString whole = rowTitle(item);
    // Pages of one site differ in their ends.
    if (isLink && whole.size() > measuredCharacters)
        whole = whole.left(measuredCharacters / 2) + whole.right(measuredCharacters / 2);
    whole = onOneLine(whole.left(measuredCharacters));
    const QFontMetricsF metrics(Fonts::font(isCode ? Fonts::codeTitle : Fonts::rowTitle, whole));
    HistoryListModel::Title title{metrics.elidedText(whole, isLink ? Qt::ElideMiddle : Qt::ElideRight, width), 0,
                                  width};
    if (isLink) {
        constexpr QLatin1String separator("://");
        if (const qsizetype at = whole.indexOf(separator); at > 0)
            title.schemeLength = std::min(at + separator.size(), title.text.size());
    }
    return title;
}

} // namespace

HistoryListModel::HistoryListModel(const HistoryViewModel& viewModel, QObject* parent)
    : QAbstractListModel(parent)
    , m_viewModel(viewModel)
    , m_titles(cachedTitles)
{
}

void HistoryListModel::reload()
{
    beginResetModel();
    m_items = m_viewModel.visible();
    endResetModel();
}

std::optional<int> HistoryListModel::row(const QUuid& id) const
{
    const auto found =
        std::find_if(m_items.begin(), m_items.end(), [&](const ClipItem& item) { return item.id == id; });
    if (found == m_items.end())
        return std::nullopt;
    return static_cast<int>(found - m_items.begin());
}

const HistoryListModel::Title& HistoryListModel::title(int row, qreal width) const
{
    const ClipItem& entry = item(row);
    if (const Title* cached = m_titles.object(entry.id); cached != nullptr && cached->room == width)
        return *cached;
    m_titles.insert(entry.id, std::make_unique<Title>(makeTitle(entry, width)).release());
    return *m_titles.object(entry.id);
}

int HistoryListModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_items.size());
}

QVariant HistoryListModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid())
        return {};
    switch (role) {
    case Qt::DisplayRole:
        return rowTitle(item(index.row()));
    case Qt::AccessibleTextRole:
        return accessibilityLabel(item(index.row()), ClipboardCore::currentTime());
    case Qt::AccessibleDescriptionRole:
        return tr("Double-tap to paste");
    default:
        return {};
    }
}

} // namespace Clipboard
