#include "PreviewPane.h"

#include "EmptyContent.h"
#include "HistoryViewModel.h"
#include "MetaCaption.h"
#include "OverlayScrollArea.h"
#include "PreviewBody.h"
#include "PreviewButtonBar.h"
#include "QRInline.h"
#include "SmartActionsSection.h"
#include "Theme.h"

#include <QPaintEvent>
#include <QPainter>
#include <QScrollBar>

#include <algorithm>
#include <utility>

using ClipboardCore::ClipItem;
using ClipboardCore::ClipType;
using ClipboardCore::FocusKey;

namespace Clipboard {

namespace {

constexpr int captionGap = 8;
constexpr int blockGap = 12;
constexpr int bottomMargin = 8; // a link of two lines and its QR code then just fit
constexpr OverlayScrollArea::Insets scrollInsets{.page = 0, .barAcross = 3, .barAlong = Theme::listMargin};
constexpr int innerWidth = 348;
constexpr int wheelStep = 20;
constexpr int visibleHeight = Theme::panelHeight - Theme::headerHeight - Theme::footerHeight - Theme::buttonBarHeight;

} // namespace

PreviewPane::PreviewPane(HistoryViewModel& viewModel, const PreviewBodies& bodies, QWidget* parent)
    : QWidget(parent)
    , m_viewModel(viewModel)
    , m_bodies(bodies)
    , m_content(new QWidget)
    , m_scroll(new OverlayScrollArea(m_content, scrollInsets, this))
    , m_caption(new MetaCaption(m_content))
    , m_actions(new SmartActionsSection(viewModel, innerWidth, m_content))
    , m_qr(new QRInline(m_content))
    , m_buttons(new PreviewButtonBar(viewModel, this))
{
    setAttribute(Qt::WA_OpaquePaintEvent);
    m_content->setAttribute(Qt::WA_StaticContents);
    m_scroll->verticalScrollBar()->setSingleStep(wheelStep);
    connect(m_scroll->verticalScrollBar(), &QScrollBar::valueChanged, this, &PreviewPane::framesChanged);
    m_qr->hide();
}

PreviewBody* PreviewPane::bodyFor(ClipType type)
{
    PreviewBody*& body = m_madeBodies[type];
    if (body == nullptr) {
        body = m_bodies.make(type, m_content);
        connect(body, &PreviewBody::contentHeightChanged, this, [this, made = body] {
            if (made == m_body)
                followContent();
        });
    }
    return body;
}

void PreviewPane::syncItem()
{
    const auto item = m_viewModel.selectedItem();
    m_scroll->setVisible(item.has_value());
    m_buttons->setVisible(item.has_value());
    if (m_shown.has_value() != item.has_value())
        update();
    if (!item) {
        m_shown.reset();
        return;
    }
    m_buttons->syncItem();
    m_caption->setItem(*item);
    if (m_shown != item->id)
        show(*item);
    syncQR();
}

void PreviewPane::show(const ClipItem& item)
{
    m_shown = item.id;
    PreviewBody* body = bodyFor(item.type);
    if (m_body != nullptr && m_body != body)
        m_body->hide();
    m_body = body;
    m_body->resize(innerWidth, 0);
    m_body->setItem(item, visibleHeight);
    m_body->show();
    m_revealed = nullptr;
    syncActions();
    m_scroll->verticalScrollBar()->setValue(0);
}

void PreviewPane::syncActions()
{
    const auto item = m_viewModel.selectedItem();
    if (!item || item->id != m_shown)
        return;
    m_actions->setActions(m_viewModel.smartActions(), item->type);
    layOutContent();
}

void PreviewPane::syncQR()
{
    const QImage& code = m_viewModel.qrPreview();
    const bool appears = m_qr->isHidden() && !code.isNull();
    m_qr->setImage(code);
    m_qr->setVisible(!code.isNull());
    layOutContent();
    if (appears)
        reveal(m_qr);
}

void PreviewPane::syncFocus()
{
    m_buttons->syncFocus();
    m_actions->syncFocus();
    const auto focus = m_viewModel.focus();
    if (std::exchange(m_focus, focus) != focus && focus && focus->as<FocusKey::Action>() != nullptr)
        reveal(m_actions);
}

void PreviewPane::reveal(const QWidget* part)
{
    m_revealed = part;
    m_scroll->verticalScrollBar()->setValue(scrollToReveal(part));
}

/// A long text is laid out while it is shown already: what was brought into sight below it stays there as it grows.
void PreviewPane::followContent()
{
    const QScrollBar* bar = m_scroll->verticalScrollBar();
    const bool isInSight =
        m_revealed != nullptr && m_revealed->isVisible() && scrollToReveal(m_revealed) == bar->value();
    layOutContent();
    if (isInSight)
        reveal(m_revealed);
    emit framesChanged();
}

void PreviewPane::scroll(PreviewScroll by)
{
    const bool up = by == PreviewScroll::lineUp || by == PreviewScroll::pageUp;
    // A content with a scroll bar of its own goes first, to its end.
    QScrollBar* bar = m_body != nullptr ? m_body->scrollBar() : nullptr;
    if (bar == nullptr || bar->value() == (up ? bar->minimum() : bar->maximum()))
        bar = m_scroll->verticalScrollBar();
    const bool byPage = by == PreviewScroll::pageUp || by == PreviewScroll::pageDown;
    const int step = byPage ? bar->pageStep() : bar->singleStep();
    bar->setValue(bar->value() + (up ? -step : step));
}

QString PreviewPane::selectedText() const
{
    return m_body != nullptr && m_shown ? m_body->selectedText() : QString();
}

void PreviewPane::addFrames(QHash<FocusKey, QRectF>& frames, const QWidget* ancestor) const
{
    if (!m_shown)
        return;
    m_buttons->addFrames(frames, ancestor);
    QHash<FocusKey, QRectF> actions;
    m_actions->addFrames(actions, ancestor);
    const int rise = scrollToReveal(m_actions) - m_scroll->verticalScrollBar()->value();
    for (auto action = actions.cbegin(); action != actions.cend(); ++action)
        frames.insert(action.key(), action.value().translated(0, -rise));
}

/// The nearest scroll position at which that part of the content is in sight, with the margin around it.
int PreviewPane::scrollToReveal(const QWidget* part) const
{
    const QRect wanted = part->geometry().adjusted(0, -captionGap, 0, captionGap);
    const int lowest = wanted.bottom() + 1 - m_scroll->height();
    const QScrollBar* bar = m_scroll->verticalScrollBar();
    return std::min(std::clamp(bar->value(), lowest, std::max(lowest, wanted.top())), bar->maximum());
}

void PreviewPane::layOutContent()
{
    if (m_body == nullptr)
        return;
    int top = Theme::margin;
    m_body->setGeometry(Theme::margin, top, innerWidth, m_body->contentHeight());
    top += m_body->height() + captionGap;
    m_caption->setGeometry(Theme::margin, top, innerWidth, MetaCaption::height);
    top += MetaCaption::height + blockGap;
    m_actions->place({Theme::margin, top});
    top += m_actions->contentHeight();
    if (!m_qr->isHidden()) {
        m_qr->setGeometry(Theme::margin, top + blockGap, innerWidth, QRInline::height);
        top += blockGap + QRInline::height;
    }
    m_content->resize(m_scroll->width(), top + bottomMargin);
}

void PreviewPane::resizeEvent(QResizeEvent* event)
{
    m_scroll->setGeometry(0, 0, width(), height() - Theme::buttonBarHeight);
    m_buttons->setGeometry(0, m_scroll->height(), width(), Theme::buttonBarHeight);
    layOutContent();
    QWidget::resizeEvent(event);
}

void PreviewPane::paintEvent(QPaintEvent* event)
{
    QPainter painter(this);
    painter.fillRect(event->rect(), Theme::pane);
    if (!m_shown) {
        const EmptyContent none{QLatin1String("noselect"), tr("No Selection"), {}};
        return none.paint(painter, rect());
    }
}

} // namespace Clipboard
