#include "InlineMenu.h"

#include "Accessibility.h"
#include "MenuItem.h"
#include "Painting.h"
#include "Theme.h"

#include <QAbstractButton>
#include <QAction>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>

#include <algorithm>

namespace Clipboard {

namespace {

constexpr int anchorGap = 4;
constexpr int edgeGap = 8;

class Item final : public QAbstractButton
{
public:
    Item(const QAction& action, QWidget* page)
        : QAbstractButton(page)
        , m_action(action)
    {
        Accessibility::setRole(this, action.isSeparator() ? QAccessible::Separator : QAccessible::MenuItem);
        setFocusPolicy(Qt::NoFocus);
        setAttribute(Qt::WA_Hover);
        setCheckable(action.isCheckable());
        setChecked(action.isChecked());
        setEnabled(action.isEnabled() && !action.isSeparator());
        setAccessibleName(QString(action.text()).remove(u'&'));
        Accessibility::setShortcut(this, action.shortcut().toString(QKeySequence::NativeText));
    }
    void setHighlighted(bool highlighted)
    {
        m_isHighlighted = highlighted;
        Accessibility::setFocused(this, highlighted);
        update();
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override
    {
        QPainter painter(this);
        MenuItem::paint(painter, rect(), m_action, m_isHighlighted);
    }

private:
    const QAction& m_action;
    bool m_isHighlighted = false;
};

} // namespace

InlineMenu::InlineMenu(const QList<QAction*>& actions, const QRect& anchor, QWidget* window)
    : QWidget(window)
    , m_page(new QWidget(this))
{
    Accessibility::setRole(this, QAccessible::PopupMenu);
    setAccessibleName(tr("Menu"));
    setGeometry(window->rect());
    addRows(actions);
    place(anchor);
    show();
    raise();
    step(1);
}

InlineMenu::~InlineMenu() = default;

void InlineMenu::addRows(const QList<QAction*>& actions)
{
    constexpr int width = MenuItem::menuWidth - 2 * MenuItem::menuPadding;
    int top = 0;
    for (QAction* action : actions) {
        if (!action->isVisible())
            continue;
        const int height = MenuItem::height(action->isSeparator());
        auto* item = new Item(*action, m_page);
        item->setGeometry(0, top, width, height);
        item->installEventFilter(this);
        connect(item, &QAbstractButton::clicked, this, [this, action] { choose(action); });
        m_rows.append({action, item, top});
        top += height;
    }
    m_page->resize(width, top);
}

void InlineMenu::place(const QRect& anchor)
{
    const QRect room = rect().adjusted(edgeGap, edgeGap, -edgeGap, -edgeGap);
    const int height = std::min(m_page->height() + 2 * MenuItem::menuPadding, room.height());
    m_card = QRect(anchor.left(), anchor.bottom() + 1 + anchorGap, MenuItem::menuWidth, height);
    if (m_card.bottom() > room.bottom())
        m_card.moveBottom(std::max(anchor.top() - anchorGap, room.top() + height) - 1);
    m_card.moveLeft(std::clamp(m_card.left(), room.left(), std::max(room.left(), room.right() + 1 - m_card.width())));
    auto* clip = new QWidget(this);
    const int padding = MenuItem::menuPadding;
    clip->setGeometry(m_card.adjusted(padding, padding, -padding, -padding));
    m_page->setParent(clip);
}

QString InlineMenu::current() const
{
    return m_current < 0 ? QString() : m_rows.at(m_current).action->text();
}

void InlineMenu::highlight(qsizetype row)
{
    if (m_current >= 0)
        static_cast<Item*>(m_rows.at(m_current).button)->setHighlighted(false);
    m_current = row;
    if (row < 0)
        return;
    QAbstractButton* item = m_rows.at(row).button;
    static_cast<Item*>(item)->setHighlighted(true);
    const int seen = m_page->parentWidget()->height();
    m_page->move(0, std::clamp(m_page->y(), seen - m_rows.at(row).top - item->height(), -m_rows.at(row).top));
}

void InlineMenu::step(qsizetype by)
{
    const qsizetype count = m_rows.size();
    for (qsizetype tried = 1; tried <= count; ++tried) {
        const qsizetype row = ((m_current < 0 && by < 0 ? 0 : m_current) + by * tried + count * tried) % count;
        if (m_rows.at(row).button->isEnabled())
            return highlight(row);
    }
}

void InlineMenu::handleKey(const QKeyEvent& event)
{
    const QKeySequence keys(event.keyCombination());
    const auto withKeys = std::ranges::find_if(
        m_rows, [&keys](const Row& row) { return row.button->isEnabled() && row.action->shortcut() == keys; });
    if (withKeys != m_rows.end())
        return choose(withKeys->action);
    switch (event.key()) {
    case Qt::Key_Down:
    case Qt::Key_Tab:
        return step(1);
    case Qt::Key_Up:
    case Qt::Key_Backtab:
        return step(-1);
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
        return m_current < 0 ? close() : choose(m_rows.at(m_current).action);
    case Qt::Key_Escape:
    case Qt::Key_Menu:
    case Qt::Key_F10:
        return close();
    default:
        break;
    }
}

void InlineMenu::choose(QAction* action)
{
    if (!action->isEnabled())
        return;
    const QPointer<QAction> chosen = action; // what closes with the menu may end it
    close();
    if (chosen)
        chosen->trigger();
}

void InlineMenu::close()
{
    hide();
    emit closed();
    deleteLater();
}

bool InlineMenu::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::HoverEnter || event->type() == QEvent::HoverMove) {
        const auto isOver = [watched](const Row& row) { return row.button == watched; };
        const auto over = std::ranges::find_if(m_rows, isOver);
        if (over != m_rows.end() && over->button->isEnabled() && over - m_rows.begin() != m_current)
            highlight(over - m_rows.begin());
    }
    return QWidget::eventFilter(watched, event);
}

void InlineMenu::keyPressEvent(QKeyEvent* event)
{
    handleKey(*event);
}

void InlineMenu::mousePressEvent(QMouseEvent* event)
{
    if (!m_card.contains(event->position().toPoint()))
        close();
}

void InlineMenu::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    Painting::roundedFill(painter, m_card, Theme::menuRadius, Theme::raised, Theme::outline);
}

} // namespace Clipboard
