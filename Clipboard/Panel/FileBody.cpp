#include "FileBody.h"

#include "Accessibility.h"
#include "ClipItemTexts.h"
#include "Painting.h"
#include "Theme.h"
#include "TintedIcon.h"
#include "Workspace.h"

#include <QPainter>

namespace Clipboard {

namespace {

constexpr int iconSize = 96;
constexpr int nameGap = 12;
constexpr int tileRadius = 20;
constexpr int signSize = 48;

} // namespace

FileBody::FileBody(const Workspace& workspace, QWidget* parent)
    : PreviewBody(parent)
    , m_workspace(workspace)
{
    Accessibility::setRole(this, QAccessible::StaticText);
}

void FileBody::setItem(const ClipboardCore::ClipItem& item, int /*visibleHeight*/)
{
    m_icon = m_workspace.fileIcon(item.content.toString());
    m_name = rowTitle(item);
    setAccessibleName(m_name);
    update();
}

int FileBody::contentHeight() const
{
    return iconSize + nameGap + Fonts::rowTitle.lineHeight;
}

void FileBody::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    const QRect square((width() - iconSize) / 2, 0, iconSize, iconSize);
    if (m_icon.isNull()) {
        QColor fill = Theme::tint(ClipboardCore::ClipType::file);
        fill.setAlpha(Theme::tileAlpha);
        Painting::roundedFill(painter, square, tileRadius, fill);
        drawIcon(painter, square,
                 {QLatin1String("file"), signSize, Theme::readableTint(ClipboardCore::ClipType::file)});
    } else {
        m_icon.paint(&painter, square);
    }
    const QRectF name(0, iconSize + nameGap, width(), Fonts::rowTitle.lineHeight);
    Painting::textLine(painter, name, Fonts::rowTitle, Theme::text, m_name, Qt::AlignHCenter);
}

} // namespace Clipboard
