#include "WorkerTextRecognizer.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace Clipboard {

WorkerTextRecognizer::WorkerTextRecognizer(QString worker, std::chrono::milliseconds limit)
    : m_queue(std::move(worker), maxAtOnce)
    , m_limit(limit)
{
}

void WorkerTextRecognizer::recognize(const Picture& picture, std::function<void(const QStringList& lines)> done)
{
    const QString where = picture.content.isEmpty() ? picture.path : u"-"_s;
    m_queue.run({.arguments = {u"recognize"_s, where}, .input = picture.content, .limit = m_limit},
                [done = std::move(done)](const std::optional<QString>& output) {
                    QStringList lines;
                    for (const QString& line : output.value_or(QString()).split(u'\n')) {
                        if (const QString text = line.trimmed(); !text.isEmpty())
                            lines.append(text);
                    }
                    done(lines);
                });
}

} // namespace Clipboard
