#pragma once

#include "TextRecognizer.h"
#include "WorkerQueue.h"

namespace Clipboard {

/// Reads text with the worker program, within timeLimit.
class WorkerTextRecognizer final : public TextRecognizer
{
public:
    /// The user can ask again and again; a 4K screenshot keeps a core busy for seconds.
    static constexpr int maxAtOnce = 2;

    /// Dense text on the largest picture takes a tenth of it on a machine with nothing else to do.
    static constexpr std::chrono::milliseconds timeLimit = std::chrono::seconds(30);

    /// `worker` is the path of the worker program.
    explicit WorkerTextRecognizer(QString worker, std::chrono::milliseconds limit = timeLimit);

    void recognize(const Picture& picture, std::function<void(const QStringList& lines)> done) override;

private:
    WorkerQueue m_queue;
    std::chrono::milliseconds m_limit;
};

} // namespace Clipboard
