#include "PanelFooter.h"

#include "Accessibility.h"
#include "Hint.h"
#include "MenuButton.h"
#include "Painting.h"
#include "TintedIcon.h"

#include <QPainter>

using namespace Qt::StringLiterals;

namespace Clipboard {

namespace {

constexpr int menuInset = 10;

} // namespace

PanelFooter::PanelFooter(QWidget* parent)
    : QWidget(parent)
    , m_menu(new MenuButton(this))
{
    connect(m_menu, &QAbstractButton::clicked, this, &PanelFooter::menuRequested);
    Accessibility::setRole(this, QAccessible::StaticText);
    setCount(0);
}

void PanelFooter::setCount(qsizetype count)
{
    m_count = count;
    updateName();
}

void PanelFooter::setNotice(const QString& notice)
{
    m_notice = notice;
    updateName();
}

void PanelFooter::updateName()
{
    setAccessibleName(m_notice.isEmpty() ? countText() : m_notice + u' ' + countText());
    update();
}

QString PanelFooter::countText() const
{
    return tr("%n item", nullptr, static_cast<int>(m_count));
}

QRect PanelFooter::menuAnchor() const
{
    return m_menu->geometry();
}

void PanelFooter::resizeEvent(QResizeEvent* event)
{
    QRect button({}, m_menu->controlSize());
    button.moveCenter(rect().center());
    button.moveRight(width() - menuInset);
    m_menu->setControlGeometry(button);
    QWidget::resizeEvent(event);
}

void PanelFooter::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    const QString count = countText();
    const qreal countWidth = Fonts::width(Fonts::caption, count);
    const qreal right = m_menu->x() + Theme::ringOutset - Theme::spacing;
    const QRectF left(Theme::margin, 0, right - countWidth - 2 * Theme::margin, height());
    if (m_notice.isEmpty())
        paintKeys(painter, left);
    else
        paintNotice(painter, left);
    const QRectF countBox(left.right() + Theme::margin - 1, left.y(), countWidth + 1, left.height());
    Painting::textLine(painter, countBox, Fonts::caption, m_count > 0 ? Theme::text2 : Theme::text3, count,
                       Qt::AlignRight);
}

void PanelFooter::paintKeys(QPainter& painter, const QRectF& band) const
{
    const QColor color = m_count > 0 ? Theme::text2 : Theme::text3;
    const KeyCap::Look& cap = m_count > 0 ? KeyCap::normal : KeyCap::off;
    paintHints(painter, band,
               {{u"↑↓"_s, tr("Navigate")}, {u"⏎"_s, tr("Paste")}, {tr("⌘K"), tr("Actions")}, {tr("⌘⌫"), tr("Delete")}},
               cap, color);
}

void PanelFooter::paintNotice(QPainter& painter, const QRectF& band) const
{
    constexpr int sign = 16;
    drawIcon(painter, {band.x(), band.center().y() - sign / 2.0, sign, sign}, {"warn"_L1, sign, Theme::warning});
    Painting::textLine(painter, band.adjusted(sign + Theme::spacing, 0, 0, 0), Fonts::caption, Theme::text2, m_notice);
}

} // namespace Clipboard
