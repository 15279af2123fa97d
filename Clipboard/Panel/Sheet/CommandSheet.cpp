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
#include <utility>

namespace Clipboard {

namespace {

// 18 % of the panel's full height, where the eye expects a palette; less in a panel that has not the room.
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
    connect(m_animation, &QVariantAnimation::finished, this, [this] { setVisible(m_open); });
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
    const bool open = m_viewModel.cmdkOpen() && m_viewModel.selectedItem().has_value();
    if (open) {
        m_card->sync(height());
        const QMargins margins = m_card->margins();
        const QSize card = m_card->cardRect().size();
        m_card->move((width() - card.width()) / 2 - margins.left(),
                     std::clamp(height() - card.height(), 0, cardTop) - margins.top());
    }
    if (std::exchange(m_open, open) == open)
        return;
    setAttribute(Qt::WA_TransparentForMouseEvents, !open);
    if (open) {
        show();
        raise();
    }
    fade();
}

void CommandSheet::fade()
{
    // Nobody sees it go with the panel, which may be opened again at once.
    const int duration = parentWidget()->isVisible() ? Motion::duration(Theme::sheetDuration) : 0;
    if (duration == 0) {
        m_animation->stop();
        showProgress(m_open ? 1 : 0);
        return setVisible(m_open);
    }
    m_animation->setDirection(m_open ? QAbstractAnimation::Forward : QAbstractAnimation::Backward);
    if (m_animation->state() == QAbstractAnimation::Running)
        return; // back from where it is
    m_animation->setDuration(duration);
    m_animation->start();
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
