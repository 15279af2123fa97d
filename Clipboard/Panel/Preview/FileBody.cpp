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

FileBody::FileBody(const Workspace& workspace, FileKinds& files, QWidget* parent)
    : PreviewBody(parent)
    , m_workspace(workspace)
    , m_files(files)
{
    connect(&files, &FileKinds::found, this, &FileBody::syncKind);
    Accessibility::setRole(this, QAccessible::StaticText);
}

void FileBody::setItem(const ClipboardCore::ClipItem& item, int /*visibleHeight*/)
{
    m_path = item.content.toString();
    m_name = rowTitle(item);
    setAccessibleName(m_name);
    syncKind();
}

void FileBody::syncKind()
{
    m_kind = m_files.kind(m_path);
    const bool isFolder = m_kind == FileKinds::Kind::folder;
    m_icon = m_workspace.fileIcon(isFolder && !m_path.endsWith(u'/') ? m_path + u'/' : m_path);
    update();
}

int FileBody::contentHeight() const
{
    return iconSize + nameGap + Fonts::rowTitle.lineHeight;
}

void FileBody::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    const bool isGone = m_kind == FileKinds::Kind::gone;
    painter.setOpacity(isGone ? Theme::goneOpacity : 1);
    const QRect square((width() - iconSize) / 2, 0, iconSize, iconSize);
    if (m_icon.isNull()) {
        QColor fill = Theme::tint(ClipboardCore::ClipType::file);
        fill.setAlpha(Theme::tileAlpha);
        Painting::roundedFill(painter, square, tileRadius, fill);
        drawIcon(painter, square,
                 {QLatin1String(m_kind == FileKinds::Kind::folder ? "folder" : "file"), signSize,
                  Theme::readableTint(ClipboardCore::ClipType::file)});
    } else {
        m_icon.paint(&painter, square);
    }
    const QRectF name(0, iconSize + nameGap, width(), Fonts::rowTitle.lineHeight);
    painter.setOpacity(1);
    Painting::textLine(painter, name, Fonts::rowTitle, isGone ? Theme::text3 : Theme::text, m_name, Qt::AlignHCenter);
}

} // namespace Clipboard
