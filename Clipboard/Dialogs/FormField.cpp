#include "FormField.h"

#include "Painting.h"
#include "Theme.h"

#include <QIntValidator>
#include <QKeyEvent>
#include <QPainter>

#include <algorithm>
#include <utility>

namespace Clipboard {

namespace {

constexpr int sidePadding = 7;
constexpr int fieldHeight = Theme::buttonHeight + 2 * Theme::ringOutset; // as high as the buttons beside it
constexpr int manySteps = 10;

} // namespace

FormField::FormField(std::function<QString()> copiedText, QWidget* parent)
    : QLineEdit(parent)
    , m_copiedText(std::move(copiedText))
{
    setFrame(false);
    setAcceptDrops(false);
    setFont(Fonts::font(Fonts::label));
    setFixedHeight(fieldHeight);
    setTextMargins(sidePadding + Theme::ringOutset, 0, sidePadding + Theme::ringOutset, 0);
    QPalette colors = palette();
    colors.setBrush(QPalette::Base, Qt::NoBrush);
    setPalette(colors);
}

void FormField::setRange(int least, int most)
{
    m_least = least;
    m_most = most;
    setValidator(new QIntValidator(0, most, this)); // what is too little may yet become enough
    setAlignment(Qt::AlignRight);
    connect(this, &QLineEdit::editingFinished, this, &FormField::chooseNumber);
}

int FormField::number() const
{
    return std::clamp(text().toInt(), m_least, m_most);
}

void FormField::setNumber(int number)
{
    m_chosen = number;
    setText(number == 0 ? QString() : QString::number(number));
}

void FormField::chooseNumber()
{
    const int before = m_chosen;
    setNumber(number());
    if (m_chosen != before)
        emit numberChosen(m_chosen);
}

void FormField::count(int by)
{
    setText(QString::number(std::clamp(number() + by, m_least, m_most)));
}

// The toolkit's own ways of pasting ask the selection's owner, which may hang, and wait for it.

void FormField::keyPressEvent(QKeyEvent* event)
{
    const int steps = event->modifiers().testFlag(Qt::ShiftModifier) ? manySteps : 1;
    if (event->matches(QKeySequence::Paste))
        insert(m_copiedText());
    else if (m_most > 0 && event->key() == Qt::Key_Up)
        count(steps);
    else if (m_most > 0 && event->key() == Qt::Key_Down)
        count(-steps);
    else
        QLineEdit::keyPressEvent(event);
}

void FormField::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() != Qt::MiddleButton)
        QLineEdit::mouseReleaseEvent(event);
}

void FormField::contextMenuEvent(QContextMenuEvent* /*event*/)
{
    // The toolkit's menu offers what the keys do, in its own way.
}

void FormField::focusOutEvent(QFocusEvent* event)
{
    QLineEdit::focusOutEvent(event);
    if (m_most > 0)
        chooseNumber(); // also what the validator does not take for finished
}

void FormField::paintEvent(QPaintEvent* event)
{
    {
        constexpr int outset = Theme::ringOutset;
        QPainter painter(this);
        const QRectF ground = QRectF(rect()).adjusted(outset, outset, -outset, -outset);
        Painting::roundedFill(painter, ground, Theme::buttonRadius, Theme::well, Theme::controlLine);
        if (hasFocus())
            Painting::focusRing(painter, ground, Theme::buttonRadius);
    }
    QLineEdit::paintEvent(event);
}

} // namespace Clipboard
