#include "DialogCard.h"

#include "Accessibility.h"
#include "DialogButton.h"
#include "Painting.h"

#include <QKeyEvent>
#include <QPainter>
#include <QRegularExpression>
#include <QTextLayout>

#include <algorithm>

namespace Clipboard {

namespace {

constexpr int cardWidth = 320;
constexpr int topPadding = 24;
constexpr int sidePadding = 20;
constexpr int tileSize = 44;
constexpr int tileRadius = 12;
constexpr float tileOpacity = 0.16F;
constexpr int belowTile = 14;
constexpr int belowTitle = 4;
constexpr int aboveButtons = 20;
constexpr int betweenButtons = 8;
constexpr int textWidth = cardWidth - 2 * sidePadding;

QStringList wrapped(const QString& paragraph, qreal width)
{
    QTextLayout layout(paragraph, Fonts::font(Fonts::body));
    QStringList lines;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        lines.append(paragraph.mid(line.textStart(), line.textLength()).trimmed());
    }
    layout.endLayout();
    return lines;
}

QStringList sentences(const QString& paragraph)
{
    static const QRegularExpression afterSentence(QStringLiteral("(?<=[.!?]) "));
    return paragraph.split(afterSentence);
}

/// Wraps into as few lines as fit: a sentence a line when that takes no more of them, else lines of about equal width.
QStringList balanced(const QString& paragraph)
{
    QStringList best = wrapped(paragraph, textWidth);
    QStringList whole = sentences(paragraph);
    const auto fits = [](const QString& line) { return Fonts::width(Fonts::body, line) <= textWidth; };
    if (whole.size() <= best.size() && std::all_of(whole.begin(), whole.end(), fits))
        return whole;
    for (int width = textWidth - 8; width > textWidth / 2; width -= 8) {
        QStringList narrower = wrapped(paragraph, width);
        if (narrower.size() > best.size())
            break;
        best = std::move(narrower);
    }
    return best;
}

} // namespace

DialogCard::DialogCard(bool composited, const TintedIcon& sign, QWidget* parent)
    : QDialog(parent, Qt::Dialog | Qt::FramelessWindowHint)
    , m_surface(dialogShadow, Theme::raised)
    , m_sign(sign)
{
    m_surface.setComposited(composited);
    Surface::prepare(this);
    setModal(true);
    Accessibility::setRole(this, QAccessible::Dialog);
}

void DialogCard::setTexts(const QString& title, const QString& text)
{
    m_title = title;
    m_lines.clear();
    for (const QString& paragraph : text.split(u'\n'))
        m_lines += balanced(paragraph);
    setWindowTitle(title);
    setAccessibleName(title);
    setAccessibleDescription(text);
}

DialogButton* DialogCard::addButton(const QString& text, const QString& keys, bool destructive)
{
    auto* button = new DialogButton(text, keys, destructive, this);
    m_buttons.append(button);
    setFixedSize(sizeHint());
    layOutButtons();
    return button;
}

QRect DialogCard::card() const
{
    return rect().marginsRemoved(m_surface.margins());
}

int DialogCard::textHeight() const
{
    const int lines = static_cast<int>(m_lines.size());
    return topPadding + tileSize + belowTile + Fonts::heading.lineHeight + belowTitle + lines * Fonts::body.lineHeight;
}

QSize DialogCard::sizeHint() const
{
    const int count = static_cast<int>(m_buttons.size());
    const int buttons = count * DialogButton::height + (count - 1) * betweenButtons;
    return QSize(cardWidth, textHeight() + aboveButtons + buttons + sidePadding).grownBy(m_surface.margins());
}

void DialogCard::layOutButtons()
{
    QRect place = card().adjusted(sidePadding, 0, -sidePadding, 0);
    place.moveTop(card().top() + textHeight() + aboveButtons);
    place.setHeight(DialogButton::height);
    for (DialogButton* button : m_buttons) {
        button->setControlGeometry(place);
        place.translate(0, DialogButton::height + betweenButtons);
    }
}

void DialogCard::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    const QRectF ground(card());
    m_surface.paint(painter, ground);

    const QRectF tile(ground.center().x() - tileSize / 2.0, ground.top() + topPadding, tileSize, tileSize);
    QColor tileColor = m_sign.color;
    tileColor.setAlphaF(tileOpacity);
    Painting::roundedFill(painter, tile, tileRadius, tileColor);
    drawIcon(painter, tile, m_sign);

    const qreal left = ground.left() + sidePadding;
    const qreal width = ground.width() - 2 * sidePadding;
    QRectF line(left, tile.bottom() + belowTile, width, Fonts::heading.lineHeight);
    Painting::textLine(painter, line, Fonts::heading, Theme::text, m_title, Qt::AlignHCenter);
    line = QRectF(left, line.bottom() + belowTitle, width, Fonts::body.lineHeight);
    for (const QString& text : m_lines) {
        Painting::textLine(painter, line, Fonts::body, Theme::text2, text, Qt::AlignHCenter);
        line.translate(0, line.height());
    }
}

void DialogCard::showEvent(QShowEvent* event)
{
    if (!m_buttons.isEmpty())
        m_buttons.first()->setFocus(Qt::TabFocusReason);
    QDialog::showEvent(event);
}

void DialogCard::keyPressEvent(QKeyEvent* event)
{
    switch (event->key()) {
    case Qt::Key_Down:
        moveFocus(1);
        break;
    case Qt::Key_Up:
        moveFocus(-1);
        break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        for (DialogButton* button : m_buttons) {
            if (button->hasFocus())
                return button->click();
        }
        break;
    default:
        QDialog::keyPressEvent(event);
    }
}

void DialogCard::moveFocus(int step)
{
    const auto count = m_buttons.size();
    for (qsizetype i = 0; i < count; ++i) {
        if (m_buttons[i]->hasFocus())
            return m_buttons[(i + step + count) % count]->setFocus(Qt::TabFocusReason);
    }
}

} // namespace Clipboard
