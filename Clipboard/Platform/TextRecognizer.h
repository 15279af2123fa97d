#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <functional>

namespace Clipboard {

/// Reads the text in pictures, off the main thread and outside this process.
class TextRecognizer
{
public:
    virtual ~TextRecognizer() = default;

    struct Picture
    {
        QString path;
        QByteArray content{}; // where the file can be read by this process alone
    };

    /// Calls `done` once, on the main thread and never before this returns, with the lines of text from top to bottom
    /// and without empty ones. No lines when there is no text or when reading fails, in whatever way. `done` is not
    /// called after the recognizer is gone.
    virtual void recognize(const Picture& picture, std::function<void(const QStringList& lines)> done) = 0;
};

} // namespace Clipboard
