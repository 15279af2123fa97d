#include "CommandSheet.h"

#include "AppearEffect.h"
#include "CommandCard.h"
#include "FrameReport.h"
#include "HistoryViewModel.h"
#include "Motion.h"
#include "Painting.h"
#include "SearchField.h"
#include "Theme.h"

#include <QMouseEvent>
#include <QPainter>
#include <QVariantAnimation>

#include <algorithm>

namespace Clipboard {

namespace {

// 18 % of the panel's full height, where the eye expects a palette.
constexpr int cardTop = 97;

} // namespace

CommandSheet::CommandSheet(HistoryViewModel& viewModel, Thumbs& thumbs, FileKinds& files, QWidget* parent)
    : QWidget(parent)
    , m_viewModel(viewModel)
    , m_card(new CommandCard(viewModel, thumbs, files, this))
    , m_effect(new AppearEffect(m_card))
    , m_animation(new QVariantAnimation(this))
    , m_cornerRadius(Theme::panelRadius)
{
    m_card->setGraphicsEffect(m_effect);
    m_animation->setStartValue(0.0);
    m_animation->setEndValue(1.0);
    m_animation->setEasingCurve(QEasingCurve::OutCubic);
    connect(m_animation, &QVariantAnimation::valueChanged, this,
            [this](const QVariant& value) { showProgress(value.toReal()); });
    hide();
}

SearchField* CommandSheet::filterField() const
{
    return m_card->filterField();
}

void CommandSheet::setCornerRadius(int radius)
{
    m_cornerRadius = radius;
    update();
}

void CommandSheet::sync()
{
    const bool shown = m_viewModel.cmdkOpen() && m_viewModel.selectedItem().has_value();
    if (!shown)
        return hide();
    m_card->sync();
    const QMargins margins = m_card->margins();
    const int left = (width() - m_card->cardRect().width()) / 2 - margins.left();
    const int top = std::min(cardTop, height() - m_card->cardRect().height()) - margins.top();
    m_card->move(left, top);
    if (isHidden())
        open();
}

void CommandSheet::open()
{
    m_animation->stop();
    const int duration = Motion::duration(Theme::sheetDuration);
    showProgress(duration > 0 ? 0 : 1);
    show();
    raise();
    if (duration > 0) {
        m_animation->setDuration(duration);
        m_animation->start();
    }
}

void CommandSheet::showProgress(qreal progress)
{
    m_progress = progress;
    m_effect->setProgress(progress);
    update();
}

void CommandSheet::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    QColor shade = Theme::backdrop;
    shade.setAlphaF(shade.alphaF() * static_cast<float>(m_progress));
    // The panel's outline stays bright.
    Painting::roundedFill(painter, rect().adjusted(1, 1, -1, -1), std::max(0, m_cornerRadius - 1), shade);
    reportFrame(this, "sheet-painted");
}

void CommandSheet::mousePressEvent(QMouseEvent* event)
{
    if (!m_card->cardRect().translated(m_card->pos()).contains(event->position().toPoint()))
        m_viewModel.setCmdkOpen(false);
}

} // namespace Clipboard
