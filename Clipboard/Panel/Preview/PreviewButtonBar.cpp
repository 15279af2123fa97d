#include "PreviewButtonBar.h"

#include "HistoryViewModel.h"
#include "PreviewButton.h"
#include "Theme.h"

#include <QPainter>

using ClipboardCore::ClipType;
using ClipboardCore::FocusKey;
using ClipboardCore::ItemAction;

namespace Clipboard {

namespace {

constexpr int outlineWidth = 1; // the panel's, which lies beyond the bar's right edge

} // namespace

PreviewButtonBar::PreviewButtonBar(HistoryViewModel& viewModel, QWidget* parent)
    : QWidget(parent)
    , m_viewModel(viewModel)
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

void PreviewButtonBar::syncItem()
{
    const auto item = m_viewModel.selectedItem();
    const bool canAnnotate = item && item->type == ClipType::image && m_viewModel.onAnnotate;
    for (PreviewButton* button : std::as_const(m_buttons)) {
        button->setEnabled(button->action() != ItemAction::annotate || canAnnotate);
        button->setChecked(button->action() == ItemAction::pin && item && item->isPinned);
    }
}

void PreviewButtonBar::syncFocus()
{
    for (PreviewButton* button : std::as_const(m_buttons))
        button->setRing(m_viewModel.focus() == FocusKey::button(button->action()));
}

void PreviewButtonBar::addFrames(QHash<FocusKey, QRectF>& frames, const QWidget* ancestor) const
{
    for (const PreviewButton* button : m_buttons) {
        if (button->isEnabled())
            frames.insert(FocusKey::button(button->action()), button->controlRectIn(ancestor));
    }
}

void PreviewButtonBar::resizeEvent(QResizeEvent* event)
{
    const int top = (height() + 1 - Theme::buttonHeight) / 2;
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
    QWidget::resizeEvent(event);
}

void PreviewButtonBar::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    painter.fillRect(QRect(0, 0, width(), 1), Theme::seam);
}

} // namespace Clipboard
