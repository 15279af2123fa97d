#include "CodeBody.h"

#include "OverlayScrollArea.h"
#include "Painting.h"
#include "Support/Graphemes.h"
#include "TextBlock.h"
#include "TextBody.h"
#include "Theme.h"

#include <QPainter>
#include <QScrollBar>

#include <algorithm>

namespace Clipboard {

namespace {

constexpr int greatestHeight = 196;
constexpr int wellPadding = 4;
constexpr int textPaddingX = 8;
constexpr int textPaddingY = 4;
constexpr OverlayScrollArea::Insets scrollInsets{.page = wellPadding, .barAcross = 3, .barAlong = wellPadding};

} // namespace

CodeBody::CodeBody(QWidget* parent)
    : PreviewBody(parent)
    , m_page(new QWidget)
    , m_scroll(new OverlayScrollArea(m_page, scrollInsets, this))
    , m_code(new TextBlock(Fonts::code, TextBlock::Lines::unbroken, m_page))
{
    m_page->setAttribute(Qt::WA_StaticContents);
    m_scroll->verticalScrollBar()->setSingleStep(Fonts::code.lineHeight);
    m_scroll->horizontalScrollBar()->setSingleStep(Fonts::code.lineHeight);
    connect(m_code, &TextBlock::contentSizeChanged, this, [this] {
        layOut();
        emit contentHeightChanged();
    });
}

void CodeBody::setItem(const ClipboardCore::ClipItem& item, int /*visibleHeight*/)
{
    const auto shown = ClipboardCore::Graphemes::prefix(item.content, previewCharacters);
    m_code->setText(shown.text, {}, greatestHeight);
    layOut();
    m_scroll->verticalScrollBar()->setValue(0);
    m_scroll->horizontalScrollBar()->setValue(0);
}

int CodeBody::contentHeight() const
{
    return std::min(greatestHeight, m_code->contentHeight() + 2 * (wellPadding + textPaddingY));
}

QString CodeBody::selectedText() const
{
    return m_code->selectedText();
}

QScrollBar* CodeBody::scrollBar() const
{
    return m_scroll->verticalScrollBar();
}

void CodeBody::layOut()
{
    m_scroll->setGeometry(0, 0, width(), contentHeight());
    const int room = width() - 2 * (wellPadding + textPaddingX);
    m_code->setGeometry(textPaddingX, textPaddingY, std::max(room, m_code->contentWidth()), m_code->contentHeight());
    m_page->resize(m_code->geometry().bottomRight().x() + 1 + textPaddingX, m_code->contentHeight() + 2 * textPaddingY);
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
