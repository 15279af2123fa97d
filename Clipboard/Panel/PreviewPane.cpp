#include "PreviewPane.h"

#include "EmptyContent.h"
#include "HistoryViewModel.h"
#include "MetaCaption.h"
#include "OverlayScrollBar.h"
#include "PreviewBody.h"
#include "PreviewButton.h"
#include "Theme.h"

#include <QPaintEvent>
#include <QPainter>
#include <QScrollArea>
#include <QScrollBar>

using ClipboardCore::ClipItem;
using ClipboardCore::ClipType;
using ClipboardCore::FocusKey;
using ClipboardCore::ItemAction;

namespace Clipboard {

namespace {

constexpr int captionGap = 8;
constexpr int scrollBarInset = 3;
constexpr int outlineWidth = 1; // the panel's, which the pane leaves free at its right edge
constexpr int innerWidth = 348;
constexpr int wheelStep = 20;

} // namespace

PreviewPane::PreviewPane(HistoryViewModel& viewModel, const Workspace& workspace, Thumbs& thumbs, QWidget* parent)
    : QWidget(parent)
    , m_viewModel(viewModel)
    , m_workspace(workspace)
    , m_thumbs(thumbs)
    , m_scroll(new QScrollArea(this))
    , m_content(new QWidget)
    , m_scrollBar(new OverlayScrollBar(m_scroll->verticalScrollBar(), this))
    , m_caption(new MetaCaption(m_content))
{
    setAttribute(Qt::WA_OpaquePaintEvent);
    m_scroll->setFrameShape(QFrame::NoFrame);
    m_scroll->setFocusPolicy(Qt::NoFocus);
    m_scroll->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_scroll->setWidget(m_content);
    m_scroll->viewport()->setAutoFillBackground(false);
    m_content->setAutoFillBackground(false);
    m_scroll->verticalScrollBar()->setSingleStep(wheelStep);
    makeButtons();
}

void PreviewPane::makeButtons()
{
    for (const ItemAction action : ClipboardCore::allItemActions) {
        auto* button = new PreviewButton(action, this);
        connect(button, &QAbstractButton::clicked, this, [this, action] {
            m_viewModel.activate(FocusKey::button(action));
            syncItem(); // whatever the click made of a checkable button, the entry decides
        });
        m_buttons.append(button);
    }
}

PreviewBody* PreviewPane::bodyFor(ClipType type)
{
    PreviewBody*& body = m_bodies[type];
    if (body == nullptr) {
        body = PreviewBody::make(type, m_workspace, m_thumbs, m_content);
        connect(body, &PreviewBody::contentHeightChanged, this, [this, made = body] {
            if (made == m_body)
                layOutContent();
        });
    }
    return body;
}

void PreviewPane::syncItem()
{
    const auto item = m_viewModel.selectedItem();
    m_scroll->setVisible(item.has_value());
    const bool canAnnotate = item && item->type == ClipType::image && m_viewModel.onAnnotate;
    for (PreviewButton* button : std::as_const(m_buttons)) {
        button->setVisible(item.has_value());
        button->setEnabled(button->action() != ItemAction::annotate || canAnnotate);
        button->setChecked(button->action() == ItemAction::pin && item && item->isPinned);
    }
    if (!item) {
        m_shown.reset();
        return update();
    }
    m_caption->setItem(*item);
    if (m_shown == item->id)
        return;
    const bool wasEmpty = !m_shown.has_value();
    m_shown = item->id;
    PreviewBody* body = bodyFor(item->type);
    if (m_body != nullptr && m_body != body)
        m_body->hide();
    m_body = body;
    m_body->resize(innerWidth, 0);
    m_body->setItem(*item, Theme::panelHeight);
    m_body->show();
    layOutContent();
    m_scroll->verticalScrollBar()->setValue(0);
    if (wasEmpty)
        update();
}

void PreviewPane::syncFocus()
{
    for (PreviewButton* button : std::as_const(m_buttons))
        button->setRing(m_viewModel.focus() == FocusKey::button(button->action()));
}

QString PreviewPane::selectedText() const
{
    return m_body != nullptr && m_shown ? m_body->selectedText() : QString();
}

void PreviewPane::addFrames(QHash<FocusKey, QRectF>& frames, const QWidget* ancestor) const
{
    if (!m_shown)
        return;
    for (const PreviewButton* button : m_buttons) {
        if (button->isEnabled())
            frames.insert(FocusKey::button(button->action()), button->controlRectIn(ancestor));
    }
}

void PreviewPane::layOutContent()
{
    if (m_body == nullptr)
        return;
    const int bodyHeight = m_body->contentHeight();
    m_body->setGeometry(Theme::margin, Theme::margin, innerWidth, bodyHeight);
    const int captionTop = Theme::margin + bodyHeight + captionGap;
    m_caption->setGeometry(Theme::margin, captionTop, innerWidth, MetaCaption::height);
    m_content->resize(m_scroll->width(), captionTop + MetaCaption::height + Theme::margin);
}

void PreviewPane::layOutButtons()
{
    const int top = height() - Theme::buttonBarHeight + (Theme::buttonBarHeight + 1 - Theme::buttonHeight) / 2;
    int left = Theme::margin;
    int right = width() + outlineWidth - Theme::margin;
    for (PreviewButton* button : std::as_const(m_buttons)) {
        const bool atLeft = button->action() == ItemAction::paste || button->action() == ItemAction::copy;
        if (!atLeft)
            break;
        button->setControlGeometry({QPoint(left, top), button->controlSize()});
        left += button->controlSize().width() + Theme::spacing;
    }
    for (auto button = m_buttons.crbegin(); right > left && button != m_buttons.crend(); ++button) {
        if ((*button)->action() == ItemAction::copy)
            break;
        right -= (*button)->controlSize().width();
        (*button)->setControlGeometry({QPoint(right, top), (*button)->controlSize()});
        right -= Theme::spacing;
    }
}

void PreviewPane::resizeEvent(QResizeEvent* event)
{
    m_scroll->setGeometry(0, 0, width(), height() - Theme::buttonBarHeight);
    m_scrollBar->setGeometry(width() - scrollBarInset - OverlayScrollBar::grabWidth, Theme::listMargin,
                             OverlayScrollBar::grabWidth, m_scroll->height() - 2 * Theme::listMargin);
    m_scrollBar->raise();
    layOutContent();
    layOutButtons();
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
    painter.fillRect(QRect(0, height() - Theme::buttonBarHeight, width(), 1), Theme::seam);
}

} // namespace Clipboard
