#include "PreviewBodies.h"

#include "CodeBody.h"
#include "ColorBody.h"
#include "FileBody.h"
#include "ImageBody.h"
#include "TextBody.h"

using ClipboardCore::ClipType;

namespace Clipboard {

PreviewBody* PreviewBodies::make(ClipType type, QWidget* parent) const
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
        return new FileBody(workspace, files, parent);
    }
    Q_UNREACHABLE();
}

} // namespace Clipboard
