#pragma once

#include "History/ClipItem.h"

#include <QObject>
#include <QString>
#include <QThreadPool>
#include <QVariant>

#include <functional>
#include <optional>

namespace Clipboard::Bus {

/// Makes entries of what is handed over instead of copied. Main thread only.
class EntryIntake final : public QObject
{
    Q_OBJECT
public:
    using Done = std::function<void(const std::optional<ClipboardCore::ClipItem>& item)>;

    /// `imagesDir` is where pictures go.
    explicit EntryIntake(QString imagesDir);
    ~EntryIntake() override;

    /// Whether content of that MIME type can become an entry.
    [[nodiscard]] static bool takes(const QString& type);
    /// Reads and classifies off the main thread, after what was taken before. `content` is as toWire() makes it; `done`
    /// gets nothing when there is nothing in it, or no such thing as the type says.
    void take(const QString& type, const QVariant& content, Done done);

private:
    QString m_imagesDir;
    QThreadPool m_pool;
};

} // namespace Clipboard::Bus
