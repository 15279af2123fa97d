#include "ToastView.h"

#include "Accessibility.h"
#include "Motion.h"
#include "Painting.h"
#include "Support/Graphemes.h"
#include "TintedIcon.h"

#include <QPainter>
#include <QVariantAnimation>

#include <algorithm>
#include <cmath>

namespace Clipboard {

namespace {

constexpr int cardHeight = 40;
constexpr int leftPadding = 12;
constexpr int rightPadding = 16;
constexpr int checkWidth = 19; // the box in which the sign appears 15 across
constexpr int gap = 8;
constexpr int aboveWorkAreaBottom = 66;
constexpr int leastSideMargin = 16;

// In characters: more than fit on any screen, and few enough to be measured and announced at once. A notice may quote
// what somebody copied, of any length.
constexpr qsizetype longestText = 1000;

QString shownPart(const QString& text)
{
    if (text.size() <= longestText)
        return text;
    return ClipboardCore::Graphemes::prefix(QStringView(text), longestText).toString() + u'…';
}

int cardWidth(const QString& text)
{
    const int label = static_cast<int>(std::ceil(Fonts::width(Fonts::button, text)));
    return leftPadding + checkWidth + gap + label + rightPadding;
}

} // namespace

ToastView::ToastView(const ClipboardCore::ToastText& text, bool composited)
    : QWidget(nullptr, Qt::ToolTip | Qt::FramelessWindowHint | Qt::WindowTransparentForInput |
                           Qt::WindowDoesNotAcceptFocus | Qt::NoDropShadowWindowHint)
    , m_text(shownPart(text), text.kind)
    , m_surface(toastShadow, Theme::raised)
{
    m_surface.setComposited(composited);
    Surface::prepare(this);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_QuitOnClose, false);
    setFocusPolicy(Qt::NoFocus);
    Accessibility::setRole(this, QAccessible::Notification);
    // Every program of the session reads titles, and the text may quote what was copied.
    setWindowTitle(tr("Notice"));
    setAccessibleName(m_text);
}

void ToastView::placeIn(const QRect& workArea)
{
    const int width = std::min(cardWidth(m_text), workArea.width() - 2 * leastSideMargin);
    const int left = workArea.left() + (workArea.width() - width) / 2;
    const int bottom = workArea.top() + workArea.height() - aboveWorkAreaBottom;
    setGeometry(QRect(left, bottom - cardHeight, width, cardHeight).marginsAdded(m_surface.margins()));
}

QRect ToastView::cardGeometry() const
{
    return geometry().marginsRemoved(m_surface.margins());
}

void ToastView::fadeIn()
{
    fade(0, 1, Theme::toastInDuration, [] {});
}

void ToastView::fadeOut(const std::function<void()>& done)
{
    fade(windowOpacity(), 0, Theme::toastOutDuration, done);
}

void ToastView::fade(qreal from, qreal to, int milliseconds, const std::function<void()>& done)
{
    const int duration = m_surface.isComposited() ? Motion::duration(milliseconds) : 0;
    if (duration == 0)
        return done();
    auto* animation = new QVariantAnimation(this);
    animation->setStartValue(from);
    animation->setEndValue(to);
    animation->setDuration(duration);
    animation->setEasingCurve(QEasingCurve::OutCubic);
    connect(animation, &QVariantAnimation::valueChanged, this,
            [this](const QVariant& value) { setWindowOpacity(value.toReal()); });
    connect(animation, &QVariantAnimation::finished, this, done);
    setWindowOpacity(from);
    animation->start(QAbstractAnimation::DeleteWhenStopped);
}

void ToastView::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    const QRectF card(rect().marginsRemoved(m_surface.margins()));
    m_surface.paint(painter, card);
    const QRectF sign(card.left() + leftPadding, card.top(), checkWidth, card.height());
    if (m_text.kind == ClipboardCore::ToastText::Kind::failure)
        drawIcon(painter, sign, {QLatin1String("warn"), checkWidth, Theme::warning});
    else
        drawIcon(painter, sign, {QLatin1String("checkfill"), checkWidth, Theme::success, 1.75, Theme::raised});
    const QRectF label(sign.right() + gap, card.top(), card.right() - rightPadding - sign.right() - gap, card.height());
    Painting::textLine(painter, label, Fonts::button, Theme::text, m_text);
}

} // namespace Clipboard
