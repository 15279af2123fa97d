#include "CanvasCursor.h"

using ClipboardCore::AnnotationTool;
using ClipboardCore::CanvasGesture;

namespace Clipboard {

Qt::CursorShape cursorShape(const CanvasGesture::Cursor& cursor)
{
    using Shape = CanvasGesture::Cursor::Shape;
    switch (cursor.shape) {
    case Shape::frameResize: {
        const bool isFalling =
            cursor.corner == CanvasGesture::Corner::topLeft || cursor.corner == CanvasGesture::Corner::bottomRight;
        return isFalling ? Qt::SizeFDiagCursor : Qt::SizeBDiagCursor;
    }
    case Shape::arrow:
        return Qt::ArrowCursor;
    case Shape::openHand:
        return Qt::OpenHandCursor;
    case Shape::closedHand:
        return Qt::ClosedHandCursor;
    case Shape::resizeLeftRight:
        return Qt::SizeHorCursor;
    case Shape::resizeUpDown:
        return Qt::SizeVerCursor;
    }
    Q_UNREACHABLE();
}

Qt::CursorShape cursorShape(CanvasGesture::Aim aim, AnnotationTool tool)
{
    switch (aim) {
    case CanvasGesture::Aim::nothing:
        return Qt::ArrowCursor;
    case CanvasGesture::Aim::place:
        return tool == AnnotationTool::text ? Qt::IBeamCursor : Qt::CrossCursor;
    case CanvasGesture::Aim::move:
        return Qt::SizeAllCursor;
    case CanvasGesture::Aim::reshape:
        return Qt::CrossCursor;
    }
    Q_UNREACHABLE();
}

} // namespace Clipboard
