#include "CommandCard.h"

#include "Accessibility.h"
#include "ClipItemTexts.h"
#include "CommandRow.h"
#include "Hint.h"
#include "HistoryViewModel.h"
#include "OverlayScrollArea.h"
#include "Painting.h"
#include "RowThumb.h"
#include "SearchField.h"
#include "Theme.h"
#include "TintedIcon.h"

#include <QPainter>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;
using ClipboardCore::SmartAction;

namespace Clipboard {

namespace {

constexpr int cardWidth = 380;
constexpr int headerHeight = 48; // each band holds the seam below it
constexpr int filterHeight = 40;
constexpr int legendHeight = 36;
constexpr int listPadding = 6;
constexpr int rowsAtMost = 7;
constexpr int lastOrdinal = 9;
constexpr int thumbGap = 10;
constexpr int lensFrame = 18;
constexpr int lensSize = 16;
constexpr int filterTextLeft = 44;
constexpr int fieldTextInset = 2;
constexpr int fieldHeight = 24;
constexpr OverlayScrollArea::Insets scrollInsets{.page = listPadding, .barAcross = 2, .barAlong = listPadding};
constexpr qsizetype measuredTitle = 200;

} // namespace

CommandCard::CommandCard(HistoryViewModel& viewModel, Thumbs& thumbs, FileKinds& files, QWidget* parent)
    : QWidget(parent)
    , m_viewModel(viewModel)
    , m_thumbs(thumbs)
    , m_files(files)
    , m_surface(sheetShadow, Theme::raised)
    , m_filter(new SearchField(Fonts::label, tr("Filter actions…"), viewModel, this))
    , m_page(new QWidget)
    , m_scroll(new OverlayScrollArea(m_page, scrollInsets, this))
{
    Accessibility::setRole(this, QAccessible::Dialog);
    Accessibility::setRole(m_page, QAccessible::List);
    setAccessibleName(tr("Smart Actions"));
    connect(m_filter, &QLineEdit::textEdited, this, [this](const QString& text) {
        m_viewModel.setCmdkQuery(text);
        m_viewModel.setCmdkIndex(0); // the best match so far, whatever was highlighted
    });
}

void CommandCard::sync(int room)
{
    if (m_filter->text() != m_viewModel.cmdkQuery())
        m_filter->setText(m_viewModel.cmdkQuery());
    rebuildRows(m_viewModel.cmdkActions());
    for (qsizetype i = 0; i < m_rows.size(); ++i)
        m_rows[i]->setSelected(i == m_viewModel.cmdkIndex());
    m_page->setAccessibleName(m_rows.isEmpty() ? tr("No matching actions") : tr("Smart Actions"));
    layOut(room);
    if (const auto index = m_viewModel.cmdkIndex(); index >= 0 && index < m_rows.size())
        m_scroll->ensureWidgetVisible(m_rows[index], 0, 0);
    update();
}

void CommandCard::rebuildRows(const QList<SmartAction>& actions)
{
    const auto item = m_viewModel.selectedItem();
    QStringList labels;
    for (const SmartAction& action : actions)
        labels.append(action.label);
    if (!item || (item->id == m_item && labels == m_labels))
        return;
    m_item = item->id;
    m_labels = labels;
    qDeleteAll(m_rows);
    m_rows.clear();
    for (int i = 0; i < static_cast<int>(actions.size()); ++i) {
        const auto ordinal = i < lastOrdinal ? std::optional(i + 1) : std::nullopt;
        auto* row = new CommandRow(actions.at(i).label, ordinal, Theme::readableTint(item->type), m_page);
        connect(row, &CommandRow::pointedAt, this, [this, i] { m_viewModel.setCmdkIndex(i); });
        connect(row, &QAbstractButton::clicked, this, [this, i] {
            m_viewModel.setCmdkIndex(i);
            m_viewModel.runCmdkAt(i);
        });
        row->show();
        m_rows.append(row);
    }
}

int CommandCard::listHeight(int room) const
{
    const int count = std::clamp(static_cast<int>(m_rows.size()), 1, rowsAtMost);
    const int wanted = 2 * listPadding + count * CommandRow::height;
    return std::min(wanted, std::max(0, room - headerHeight - filterHeight - legendHeight));
}

QRect CommandCard::cardRect() const
{
    return rect().marginsRemoved(margins());
}

void CommandCard::layOut(int room)
{
    const int listed = listHeight(room);
    const QSize card(cardWidth, headerHeight + filterHeight + listed + legendHeight);
    resize(card.grownBy(margins()));
    const QRect inside = cardRect();
    const int filterTop = inside.top() + headerHeight;
    const int fieldLeft = inside.left() + filterTextLeft - fieldTextInset;
    m_filter->setGeometry(fieldLeft, filterTop + (filterHeight - 1 - fieldHeight) / 2,
                          inside.right() - Theme::margin - fieldLeft, fieldHeight);
    m_scroll->setGeometry(inside.left(), filterTop + filterHeight, inside.width(), listed);
    const int rowWidth = inside.width() - 2 * listPadding;
    m_page->resize(rowWidth, static_cast<int>(m_rows.size()) * CommandRow::height);
    for (int i = 0; i < static_cast<int>(m_rows.size()); ++i)
        m_rows[i]->setGeometry(0, i * CommandRow::height, rowWidth, CommandRow::height);
}

void CommandCard::hideEvent(QHideEvent* event)
{
    for (CommandRow* row : std::as_const(m_rows))
        row->setSelected(false); // so that the next opening tells of the highlighted row anew
    QWidget::hideEvent(event);
}

void CommandCard::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    const QRectF card(cardRect());
    m_surface.paint(painter, card);
    const QRectF header(card.left(), card.top(), card.width(), headerHeight - 1);
    const QRectF filter(card.left(), header.bottom() + 1, card.width(), filterHeight - 1);
    const QRectF legend(card.left(), card.bottom() - legendHeight + 1, card.width(), legendHeight - 1);
    for (const qreal seam : {header.bottom(), filter.bottom(), legend.top() - 1})
        painter.fillRect(QRectF(card.left() + 1, seam, card.width() - 2, 1), Theme::seam);
    paintHeader(painter, header);
    drawIcon(painter, {filter.left() + Theme::margin, filter.top(), lensFrame, filter.height()},
             {QLatin1String("search"), lensSize, Theme::text2});
    if (m_rows.isEmpty() && m_viewModel.areSmartActionsFound()) {
        const QRectF line(card.left(), filter.bottom() + 1 + listPadding, card.width(), CommandRow::height);
        Painting::textLine(painter, line, Fonts::label, Theme::text2, tr("No matching actions"), Qt::AlignHCenter);
    }
    paintLegend(painter, legend);
}

void CommandCard::paintHeader(QPainter& painter, const QRectF& band) const
{
    const auto item = m_viewModel.selectedItem();
    if (!item)
        return;
    const QRectF square(band.left() + Theme::margin, band.top() + (headerHeight - Theme::thumbSize) / 2.0,
                        Theme::thumbSize, Theme::thumbSize);
    paintRowThumb(painter, square, *item, m_thumbs, m_files);
    const qreal left = square.right() + thumbGap;
    const QRectF line(left, square.top(), band.right() - Theme::margin - left, square.height());
    const QString title = tr("Smart Actions") + u" · "_s + rowTitle(*item).left(measuredTitle);
    Painting::textLine(painter, line, Fonts::primaryButton, Theme::text, title);
}

void CommandCard::paintLegend(QPainter& painter, const QRectF& band) const
{
    paintHints(painter, band.adjusted(Theme::margin, 0, -Theme::margin, 0),
               {{u"↑↓"_s, tr("Move")}, {u"⏎"_s, tr("Run")}, {tr("⌘1–9"), tr("Jump")}, {tr("esc"), tr("Close")}},
               KeyCap::normal, Theme::text2);
}

} // namespace Clipboard
