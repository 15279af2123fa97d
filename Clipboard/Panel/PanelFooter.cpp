#include "PanelFooter.h"

#include "Accessibility.h"
#include "Hint.h"
#include "Painting.h"
#include "Theme.h"

#include <QPainter>

using namespace Qt::StringLiterals;

namespace Clipboard {

PanelFooter::PanelFooter(QWidget* parent)
    : QWidget(parent)
{
    Accessibility::setRole(this, QAccessible::StaticText);
    setCount(0);
}

void PanelFooter::setCount(qsizetype count)
{
    m_count = count;
    setAccessibleName(countText());
    update();
}

QString PanelFooter::countText() const
{
    return tr("%n item", nullptr, static_cast<int>(m_count));
}

void PanelFooter::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    const QRectF band(rect());
    const QColor color = m_count > 0 ? Theme::text2 : Theme::text3;
    const KeyCap::Look& cap = m_count > 0 ? KeyCap::normal : KeyCap::off;
    const QString count = countText();
    const qreal countWidth = Fonts::width(Fonts::caption, count);
    paintHints(painter, band.adjusted(Theme::margin, 0, -2 * Theme::margin - countWidth, 0),
               {{u"↑↓"_s, tr("Navigate")}, {u"⏎"_s, tr("Paste")}, {tr("⌘K"), tr("Actions")}, {tr("⌘⌫"), tr("Delete")}},
               cap, color);
    const QRectF countBox(band.right() - Theme::margin - countWidth - 1, band.y(), countWidth + 1, band.height());
    Painting::textLine(painter, countBox, Fonts::caption, color, count, Qt::AlignRight);
}

} // namespace Clipboard
