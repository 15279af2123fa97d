#pragma once

#include "History/ClipType.h"

class QWidget;

namespace Clipboard {

class FileKinds;
class PreviewBody;
class Thumbs;
class Workspace;

/// Makes the body of each type, which gets from here what is not in the entry.
struct PreviewBodies
{
    const Workspace& workspace;
    Thumbs& thumbs;
    FileKinds& files;

    [[nodiscard]] PreviewBody* make(ClipboardCore::ClipType type, QWidget* parent) const;
};

} // namespace Clipboard
