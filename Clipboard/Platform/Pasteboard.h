#pragma once

#include <QByteArray>
#include <QList>
#include <QObject>
#include <QSet>
#include <QString>
#include <QUrl>

#include <chrono>
#include <optional>

namespace Clipboard {

/// The desktop's general clipboard. Every query answers at once, from memory.
///
/// An adapter that can notify publishes each new content as one finished snapshot: it replaces the content, moves the
/// change count and emits changed() before the next one, so that no copy of a burst is lost. Main thread only.
class Pasteboard : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;

    /// Why the clipboard cannot be watched or written, as a sentence for the user; empty when it can.
    [[nodiscard]] virtual QString unavailableReason() const = 0;
    /// Differs after every change, by whatever program.
    [[nodiscard]] virtual qint64 changeCount() const = 0;
    /// Type identifiers of the content, the marker types of CaptureExclusion included. Empty when there are none.
    [[nodiscard]] virtual QSet<QString> types() const = 0;
    /// The local files on the pasteboard, as file URLs, in order.
    [[nodiscard]] virtual QList<QUrl> fileURLs() const = 0;
    /// The picture as encoded bytes; nothing when that form is absent.
    [[nodiscard]] virtual std::optional<QByteArray> pngData() const = 0;
    [[nodiscard]] virtual std::optional<QByteArray> tiffData() const = 0;
    /// The plain text as UTF-8; nothing when there is none.
    [[nodiscard]] virtual std::optional<QByteArray> string() const = 0;
    /// True when there is nothing because the program whose content was there took it back, as password managers do
    /// after a while. Never where the desktop cannot tell that from the end of the program.
    [[nodiscard]] virtual bool isTakenBack() const { return false; }
    /// False on a platform whose clipboard cannot tell that it changed; the watcher then polls.
    [[nodiscard]] virtual bool notifiesChanges() const = 0;

    // Each write replaces the whole content and moves the change count at once. changed() is not emitted for it: who
    // writes knows, and marks the change as its own before anybody looks.
    virtual void setString(const QByteArray& utf8) = 0;
    virtual void setFile(const QUrl& file) = 0;
    virtual void setPNG(const QByteArray& png) = 0;
    /// Opens the file at once, so that what happens to its name later does not matter, and reads it off the main
    /// thread. False, with the content untouched, when it cannot be opened.
    [[nodiscard]] virtual bool setPNGFile(const QString& path) = 0;

    // For the end of the program; both wait.

    /// Returns when changed() has been emitted for every copy made before the call, after `limit` at the latest. A
    /// clipboard that has no copies under way has nothing to wait for.
    virtual void settle(std::chrono::milliseconds /*limit*/) {}
    /// Leaves our content with the session's clipboard manager, where there is one. Nothing else works afterwards;
    /// until the object goes, the content can still be had of us.
    virtual void leave() {}

signals:
    /// Another program changed the content.
    void changed();
    /// unavailableReason() has another answer.
    void availabilityChanged();
};

} // namespace Clipboard
