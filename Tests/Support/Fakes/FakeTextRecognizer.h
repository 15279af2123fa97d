#pragma once

#include "TextRecognizer.h"

#include <utility>

namespace Clipboard::Testing {

/// A recognizer that finds what the test says, when the test says.
class FakeTextRecognizer final : public TextRecognizer
{
public:
    void recognize(const QString& picturePath, std::function<void(const QStringList& lines)> done) override
    {
        paths.append(picturePath);
        underWay.append(std::move(done));
    }
    /// Ends the recognition that has waited longest.
    void finish(const QStringList& lines) { underWay.takeFirst()(lines); }

    QStringList paths;
    QList<std::function<void(const QStringList& lines)>> underWay;
};

} // namespace Clipboard::Testing
