#pragma once

#include <QByteArrayList>

namespace Clipboard {

/// What one task cannot do without. All else is taken from it.
struct TaskNeeds
{
    /// Files, and folders with all that is in them. What does not exist does not matter.
    QByteArrayList readable;
    /// Connections to web servers, and what it takes to find them.
    bool network = false;
};

/// Libraries, the recognizer's data, and this one picture.
[[nodiscard]] TaskNeeds needsOfRecognition(const QByteArray& picture);

/// Libraries, the settings of the resolver, certificates.
[[nodiscard]] TaskNeeds needsOfTitle();

} // namespace Clipboard
