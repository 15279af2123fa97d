#include "SmartActionsSection.h"

#include "ActionChip.h"
#include "FlowLayout.h"
#include "HistoryViewModel.h"
#include "KeyCapButton.h"
#include "Painting.h"
#include "Theme.h"

#include <QPainter>

using ClipboardCore::FocusKey;
using ClipboardCore::SmartAction;

namespace Clipboard {

namespace {

constexpr int headerHeight = 16;
constexpr int reach = Theme::ringOutset;

} // namespace

SmartActionsSection::SmartActionsSection(HistoryViewModel& viewModel, int width, QWidget* parent)
    : QWidget(parent)
    , m_viewModel(viewModel)
    , m_width(width)
    , m_sheetButton(new KeyCapButton(tr("⌘K"), tr("Open command sheet"), this))
    , m_contentHeight(headerHeight)
{
    connect(m_sheetButton, &QAbstractButton::clicked, this, [this] { m_viewModel.openCmdk(); });
}

ActionChip* SmartActionsSection::chip(int index)
{
    if (index == m_chips.size()) {
        auto* made = new ActionChip(m_width, this);
        connect(made, &QAbstractButton::clicked, this,
                [this, index] { m_viewModel.activate(FocusKey::action(index)); });
        m_chips.append(made);
    }
    return m_chips.at(index);
}

void SmartActionsSection::setActions(const QList<SmartAction>& actions, ClipboardCore::ClipType type)
{
    m_count = static_cast<int>(actions.size());
    for (int i = 0; i < m_count; ++i) {
        chip(i)->setAction(actions.at(i).label, Theme::readableTint(type));
        chip(i)->setBusy(m_viewModel.isUnderWay(actions.at(i).label));
    }
    for (int i = 0; i < static_cast<int>(m_chips.size()); ++i)
        m_chips.at(i)->setVisible(i < m_count);
    layOut();
}

void SmartActionsSection::syncFocus()
{
    for (int i = 0; i < m_count; ++i)
        m_chips.at(i)->setRing(m_viewModel.focus() == FocusKey::action(i));
}

void SmartActionsSection::addFrames(QHash<FocusKey, QRectF>& frames, const QWidget* ancestor) const
{
    for (int i = 0; i < m_count; ++i)
        frames.insert(FocusKey::action(i), m_chips.at(i)->controlRectIn(ancestor));
}

void SmartActionsSection::place(const QPoint& topLeft)
{
    setGeometry(topLeft.x() - reach, topLeft.y() - reach, m_width + 2 * reach, m_contentHeight + 2 * reach);
}

void SmartActionsSection::layOut()
{
    const QSize cap = m_sheetButton->controlSize();
    m_sheetButton->setControlGeometry(
        {{reach + m_width - cap.width(), reach + (headerHeight - cap.height()) / 2}, cap});
    QList<QSize> sizes;
    for (int i = 0; i < m_count; ++i)
        sizes.append(m_chips.at(i)->controlSize());
    const FlowLayout flow(Theme::spacing);
    const QList<QPoint> places = flow.places(sizes, m_width);
    const QPoint first(reach, reach + headerHeight + Theme::spacing);
    for (int i = 0; i < m_count; ++i)
        m_chips.at(i)->setControlGeometry({first + places.at(i), sizes.at(i)});
    m_contentHeight = headerHeight;
    if (m_count > 0)
        m_contentHeight += Theme::spacing + flow.size(flow.rows(sizes, m_width)).height();
}

void SmartActionsSection::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    const QRectF header(reach, reach, m_width, headerHeight);
    Painting::textLine(painter, header, Fonts::section, Theme::text2, tr("Smart Actions"));
}

} // namespace Clipboard
