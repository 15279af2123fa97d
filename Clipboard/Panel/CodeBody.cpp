#include "CodeBody.h"

#include "OverlayScrollBar.h"
#include "Painting.h"
#include "Support/Graphemes.h"
#include "TextBlock.h"
#include "TextBody.h"
#include "Theme.h"

#include <QPainter>
#include <QScrollArea>
#include <QScrollBar>

#include <algorithm>

namespace Clipboard {

namespace {

constexpr int greatestHeight = 196;
constexpr int wellPadding = 4;
constexpr int textPaddingX = 8;
constexpr int textPaddingY = 4;
constexpr int scrollBarInset = 3;

} // namespace

CodeBody::CodeBody(QWidget* parent)
    : PreviewBody(parent)
    , m_scroll(new QScrollArea(this))
    , m_page(new QWidget)
    , m_code(new TextBlock(Fonts::code, m_page))
    , m_scrollBar(new OverlayScrollBar(m_scroll->verticalScrollBar(), this))
{
    m_scroll->setFrameShape(QFrame::NoFrame);
    m_scroll->setFocusPolicy(Qt::NoFocus);
    m_scroll->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_scroll->setWidget(m_page);
    m_scroll->viewport()->setAutoFillBackground(false);
    m_page->setAutoFillBackground(false);
    connect(m_code, &TextBlock::contentHeightChanged, this, [this] {
        layOut();
        emit contentHeightChanged();
    });
}

void CodeBody::setItem(const ClipboardCore::ClipItem& item, int /*visibleHeight*/)
{
    const auto shown = ClipboardCore::Graphemes::prefix(item.content, previewCharacters);
    m_code->resize(width() - 2 * (wellPadding + textPaddingX), 0);
    m_code->setText(shown.text, {}, greatestHeight);
    layOut();
    m_scroll->verticalScrollBar()->setValue(0);
}

int CodeBody::contentHeight() const
{
    return std::min(greatestHeight, m_code->contentHeight() + 2 * (wellPadding + textPaddingY));
}

QString CodeBody::selectedText() const
{
    return m_code->selectedText();
}

void CodeBody::layOut()
{
    const QRect inside =
        QRect(0, 0, width(), contentHeight()).adjusted(wellPadding, wellPadding, -wellPadding, -wellPadding);
    m_scroll->setGeometry(inside);
    m_page->resize(inside.width(), m_code->contentHeight() + 2 * textPaddingY);
    m_code->setGeometry(textPaddingX, textPaddingY, inside.width() - 2 * textPaddingX, m_code->contentHeight());
    m_scroll->verticalScrollBar()->setSingleStep(Fonts::code.lineHeight);
    m_scrollBar->setGeometry(width() - scrollBarInset - OverlayScrollBar::grabWidth, inside.top(),
                             OverlayScrollBar::grabWidth, inside.height());
    m_scrollBar->raise();
}

void CodeBody::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    Painting::roundedFill(painter, rect(), Theme::rowRadius, Theme::well, Theme::seam);
}

void CodeBody::resizeEvent(QResizeEvent* event)
{
    layOut();
    PreviewBody::resizeEvent(event);
}

} // namespace Clipboard
