#pragma once

#include "Annotation/AnnotationTool.h"
#include "Annotation/CanvasGesture.h"

#include <Qt>

namespace Clipboard {

/// How the pointer looks that the gestures ask for.
[[nodiscard]] Qt::CursorShape cursorShape(const ClipboardCore::CanvasGesture::Cursor& cursor);
/// How it looks over what a press would begin there with the tool.
[[nodiscard]] Qt::CursorShape cursorShape(ClipboardCore::CanvasGesture::Aim aim, ClipboardCore::AnnotationTool tool);

} // namespace Clipboard
