#include "ListRow.h"

#include "ClipItemTexts.h"
#include "FileKinds.h"
#include "HistoryListModel.h"
#include "HistoryViewModel.h"
#include "Painting.h"
#include "RowThumb.h"
#include "Theme.h"
#include "TintedIcon.h"

#include <QPainter>
#include <QStyleOptionViewItem>

#include <cmath>

using ClipboardCore::ClipItem;
using ClipboardCore::ClipType;

namespace Clipboard {

namespace {

constexpr int padding = 8;
constexpr int thumbGap = 8;
constexpr qreal titleTop = 4.5; // two lines of 18 and 16 with a pixel between, centred in 44
constexpr int detailGap = 8;
constexpr int furtherGap = 6;
constexpr int pinSize = 11;
constexpr int pinGap = 3;
constexpr qreal pinStroke = 2;

} // namespace

ListRow::ListRow(const HistoryViewModel& viewModel, const HistoryListModel& model, Thumbs& thumbs, FileKinds& files,
                 QObject* parent)
    : QAbstractItemDelegate(parent)
    , m_viewModel(viewModel)
    , m_model(model)
    , m_thumbs(thumbs)
    , m_files(files)
{
}

QSize ListRow::sizeHint(const QStyleOptionViewItem& /*option*/, const QModelIndex& /*index*/) const
{
    return {Theme::rowWidth, Theme::rowHeight};
}

void ListRow::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    const ClipItem& item = m_model.item(index.row());
    State state = State::normal;
    if (m_viewModel.selectedID() == item.id)
        state = m_viewModel.focus().has_value() || m_viewModel.cmdkOpen() ? State::idle : State::selected;
    else if (option.state.testFlag(QStyle::State_MouseOver))
        state = State::hovered;

    const QRectF row(option.rect.x(), option.rect.y(), Theme::rowWidth, Theme::rowHeight);
    switch (state) {
    case State::normal:
        break;
    case State::hovered:
        Painting::roundedFill(*painter, row, Theme::rowRadius, Theme::rowHover);
        break;
    case State::selected:
        Painting::roundedFill(*painter, row, Theme::rowRadius, Theme::rowSel, Theme::rowSelLine);
        break;
    case State::idle:
        Painting::roundedFill(*painter, row, Theme::rowRadius, Theme::rowIdle);
        break;
    }
    const QRectF square(row.x() + padding, row.y() + padding, Theme::thumbSize, Theme::thumbSize);
    painter->setOpacity(isGone(item) ? Theme::goneOpacity : 1);
    paintRowThumb(*painter, square, item, m_thumbs, m_files);
    painter->setOpacity(1);

    const qreal textLeft = square.right() + thumbGap;
    QRectF line(textLeft, row.y() + titleTop, row.right() - padding - textLeft + 1, Fonts::rowTitle.lineHeight);
    paintTitle(*painter, line, index.row(), state);
    line = QRectF(line.x(), line.bottom() + 1, line.width(), Fonts::age.lineHeight);
    paintDetails(*painter, line, index.row(), state);
}

bool ListRow::isGone(const ClipItem& item) const
{
    const bool hasFile = item.type == ClipType::file || item.type == ClipType::image;
    return hasFile && m_files.kind(item.content.toString()) == FileKinds::Kind::gone;
}

void ListRow::paintTitle(QPainter& painter, const QRectF& line, int row, State state) const
{
    const ClipItem& item = m_model.item(row);
    const Fonts::Style& style = item.type == ClipType::code ? Fonts::codeTitle : Fonts::rowTitle;
    const bool lit = state == State::selected || state == State::idle;
    const QColor faint = lit ? Theme::text2 : Theme::text3;
    const QString further = item.furtherFiles > 0 ? u'+' + QString::number(item.furtherFiles) : QString();
    const qreal taken = further.isEmpty() ? 0 : furtherGap + Fonts::width(style, further);
    const HistoryListModel::Title& title = m_model.title(row, line.width() - taken);
    // The model has elided it already; measuring it again could cut a rounded fraction.
    QRectF rest = line;
    if (title.schemeLength > 0) {
        const QString scheme = title.text.left(title.schemeLength);
        Painting::glyphs(painter, line, style, faint, scheme, Qt::LeftToRight);
        rest.setLeft(line.left() + Fonts::width(style, scheme));
    }
    const bool isLink = item.type == ClipType::link;
    Painting::glyphs(painter, rest, style, isGone(item) ? faint : Theme::text, title.text.mid(title.schemeLength),
                     isLink ? Qt::LeftToRight : Qt::LayoutDirectionAuto);
    if (!further.isEmpty()) {
        rest.setLeft(line.left() + Fonts::width(style, title.text) + furtherGap);
        Painting::glyphs(painter, rest, style, faint, further, Qt::LeftToRight);
    }
}

void ListRow::paintDetails(QPainter& painter, const QRectF& line, int row, State state) const
{
    const ClipItem& item = m_model.item(row);
    const QString type = badge(item.type);
    Painting::textLine(painter, line, Fonts::badge, Theme::readableTint(item.type), type);

    const bool lit = state == State::selected || state == State::idle;
    const QString age = ageLabel(item, ClipboardCore::currentTime());
    Painting::textLine(painter, line, Fonts::age, lit ? Theme::text2 : Theme::text3, age, Qt::AlignRight);
    if (!item.isPinned)
        return;
    const qreal pinLeft = line.left() + std::ceil(Fonts::width(Fonts::badge, type)) + detailGap;
    drawIcon(painter, QRectF(pinLeft, line.top(), pinSize, line.height()),
             {QLatin1String("pinfill"), pinSize, Theme::accent, pinStroke});
    const qreal textLeft = pinLeft + pinSize + pinGap;
    const qreal room = line.right() - Fonts::width(Fonts::age, age) - detailGap - textLeft;
    const QString pinned = tr("Pinned");
    if (Fonts::width(Fonts::badge, pinned) > room)
        return; // the pin alone says it too
    Painting::textLine(painter, QRectF(textLeft, line.top(), room, line.height()), Fonts::badge,
                       state == State::selected ? Theme::accentSoft : Theme::text2, pinned);
}

} // namespace Clipboard
