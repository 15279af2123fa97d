#include "DiscardQuestion.h"

#include "DialogButton.h"
#include "DialogCard.h"
#include "Theme.h"

#include <QMouseEvent>
#include <QPainter>

using namespace Qt::StringLiterals;

namespace Clipboard {

namespace {

constexpr int signSize = 24;
constexpr int aboveMiddle = 17; // a card in the very middle seems to have sunk

/// A dialog's card as a part of the window.
class Card final : public DialogCard
{
public:
    explicit Card(QWidget* parent)
        : DialogCard(true, {QLatin1String("trash"), signSize, Theme::danger}, parent)
    {
        setWindowFlags(Qt::Widget);
        setTexts(DiscardQuestion::tr("Discard annotations?"),
                 DiscardQuestion::tr("Your changes to this picture will be lost."));
    }
    using DialogCard::addButton;
};

} // namespace

DiscardQuestion::DiscardQuestion(QWidget* window)
    : QWidget(window)
    , m_card(nullptr)
{
    auto* card = new Card(this);
    m_card = card;
    DialogButton* discard = card->addButton(tr("Discard"), u"⏎"_s, true);
    discard->setObjectName(u"Discard"_s);
    connect(discard, &QAbstractButton::clicked, this, &DiscardQuestion::discardChosen);
    DialogButton* keep = card->addButton(tr("Keep Editing"), tr("esc"), false);
    keep->setObjectName(u"KeepEditing"_s);
    connect(keep, &QAbstractButton::clicked, this, &DiscardQuestion::keepChosen);
    m_discard = discard;
    m_keep = keep;
    setObjectName(u"DiscardQuestion"_s);
    setGeometry(window->rect());
}

bool DiscardQuestion::isKeepMarked() const
{
    return m_keep->hasFocus();
}

void DiscardQuestion::paintEvent(QPaintEvent* event)
{
    QPainter(this).fillRect(event->rect(), Theme::backdrop);
}

void DiscardQuestion::resizeEvent(QResizeEvent* event)
{
    const QSize size = m_card->size();
    m_card->move((width() - size.width()) / 2, (height() - size.height()) / 2 - aboveMiddle);
    QWidget::resizeEvent(event);
}

void DiscardQuestion::mousePressEvent(QMouseEvent* event)
{
    event->accept(); // what lies below waits for the answer
}

bool DiscardQuestion::focusNextPrevChild(bool /*next*/)
{
    // The keyboard stays with the question.
    (isKeepMarked() ? m_discard : m_keep)->setFocus(Qt::TabFocusReason);
    return true;
}

} // namespace Clipboard
