#include "PreviewBody.h"

#include "CodeBody.h"
#include "ColorBody.h"
#include "FileBody.h"
#include "ImageBody.h"
#include "TextBody.h"

using ClipboardCore::ClipType;

namespace Clipboard {

PreviewBody* PreviewBody::make(ClipType type, const Workspace& workspace, Thumbs& thumbs, QWidget* parent)
{
    switch (type) {
    case ClipType::text:
    case ClipType::link:
        return new TextBody(type, parent);
    case ClipType::code:
        return new CodeBody(parent);
    case ClipType::color:
        return new ColorBody(parent);
    case ClipType::image:
        return new ImageBody(thumbs, parent);
    case ClipType::file:
        return new FileBody(workspace, parent);
    }
    Q_UNREACHABLE();
}

} // namespace Clipboard
