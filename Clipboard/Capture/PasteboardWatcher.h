#pragma once

#include "History/ClipItem.h"
#include "RecordingRules.h"
#include "Workspace.h"

#include <QByteArray>
#include <QDeadlineTimer>
#include <QList>
#include <QMap>
#include <QObject>
#include <QString>
#include <QThreadPool>
#include <QTimer>
#include <QUrl>

#include <chrono>
#include <functional>
#include <optional>
#include <stop_token>

namespace ClipboardCore {
class JSONHistoryStore;
}

namespace Clipboard {

class Pasteboard;

/// Turns the copies made in other programs into history entries: the first of the copied files, else the picture, else
/// the text. Copies that ask not to be recorded are not even read. Main thread only.
class PasteboardWatcher final : public QObject
{
    Q_OBJECT
public:
    /// What is on the pasteboard now is never captured. Everything must outlive the watcher.
    PasteboardWatcher(Pasteboard& pasteboard, const Workspace& workspace, ClipboardCore::JSONHistoryStore& store,
                      QString imagesDir, QObject* parent = nullptr);
    ~PasteboardWatcher() override;

    /// Watches from now on. Call it once.
    void start();
    /// The pasteboard's present content is Tessaly's own: not to be captured.
    void markOwnChange();
    /// While it pauses nothing is captured, not even later.
    void setPaused(bool isPaused) { m_isPaused = isPaused; }
    /// What the user does not want recorded, from the next copy on.
    void setRules(const RecordingRules& rules) { m_rules = rules; }
    /// Forgets what its program takes back within that time after the copy; without one it stays. For what was copied
    /// from then on.
    void setForgetting(std::optional<std::chrono::nanoseconds> within) { m_forgetWithin = within; }
    /// How many copies were not recorded since the start, by the reason: "secret", "transient" and "generated" by their
    /// mark; "paused"; "application", "type" and "pattern" by the rules; "blank"; "unreadable" for no content that can
    /// be recorded; "overload" for too much at once; "cleared"
    /// when they were forgotten again.
    [[nodiscard]] const QMap<QString, int>& skipped() const { return m_skipped; }
    struct Limits
    {
        std::chrono::milliseconds reading;
        std::chrono::milliseconds converting;
    };
    /// Stores every copy made so far: waits for what is still being read and converted. Beyond its limit what has not
    /// been read is not waited for any longer; what has not been converted is stored the quick way, so that little more
    /// time passes and no entry is lost. For the end of the program.
    void finishPending(const Limits& limits);

    /// Called after an entry was stored.
    std::function<void()> onChange;
    /// Called when pictures begin to wait because their files cannot be written, and when none waits any more.
    std::function<void(bool areWaiting)> onPicturesWaiting;
    /// Called after a picture's entry was stored, with the path of its file.
    std::function<void(const QString& path)> onPicture;

private:
    /// What is noted of a copy at the moment it is seen.
    struct Capture
    {
        std::optional<QString> sourceApp;
        std::optional<QString> bundleID;
        double time = 0;
        qint64 change = 0; // the change count
    };

    struct PictureCopy
    {
        QByteArray bytes;
        Capture capture;
        bool mayConvertAgain = true;
        bool isWaiting = false; // its file could not be written
    };

    /// An entry, or why there is none.
    struct Outcome
    {
        std::optional<ClipboardCore::ClipItem> item;
        QString reason;
    };

    /// The copy that its program may take back.
    struct LastCopy
    {
        qint64 change = -1;
        QDeadlineTimer patience;
        std::optional<ClipboardCore::ClipItem> entry{};
    };

    void poll();
    void capture(const QSet<QString>& types, const Capture& capture);
    [[nodiscard]] Capture captureNow() const;
    void captureText(const QByteArray& utf8, const Capture& capture);
    void capturePicture(const PictureCopy& copy);
    void finishPicture(PictureCopy copy, const std::optional<QString>& path, bool isPicture);
    void wait(PictureCopy copy);
    void endWait(const PictureCopy& copy);
    void writeWaiting();
    /// False when it is too much.
    template <typename Work, typename Done>
    [[nodiscard]] bool convert(QThreadPool& pool, qsizetype bytes, Work work, Done done);
    void waitForConversions(const QDeadlineTimer& deadline);
    void skip(const QString& reason) { ++m_skipped[reason]; }
    void store(const ClipboardCore::ClipItem& item, const Capture& capture);
    void forgetTakenBack();
    void forget(const ClipboardCore::ClipItem& item);
    [[nodiscard]] static ClipboardCore::ClipItem
    makeItem(ClipboardCore::ClipType type, const ClipboardCore::Utf8Text& content, const Capture& capture);
    [[nodiscard]] static ClipboardCore::ClipItem makeFileItem(const QList<QUrl>& files, const Capture& capture);
    [[nodiscard]] static Outcome makeTextItem(const QByteArray& utf8, const Capture& capture,
                                              const RecordingRules& rules);

    Pasteboard& m_pasteboard;
    const Workspace& m_workspace;
    ClipboardCore::JSONHistoryStore& m_store;
    QString m_imagesDir;
    qint64 m_lastChangeCount;
    QTimer m_timer;
    bool m_isPaused = false;
    RecordingRules m_rules;
    QMap<QString, int> m_skipped;
    std::optional<std::chrono::nanoseconds> m_forgetWithin;
    LastCopy m_lastCopy;
    qint64 m_takenBack = -1; // the change whose copy is not to be stored any more
    int m_conversions = 0;   // under way or waiting, with this many bytes:
    qsizetype m_pendingBytes = 0;
    QList<PictureCopy> m_waiting;
    int m_waitingCount = 0; // those and the ones that are tried again, with this many bytes:
    qsizetype m_waitingBytes = 0;
    QTimer m_writeAgain;
    std::chrono::milliseconds m_writeDelay;
    std::stop_source m_hurry;
    // One thread each: conversions finish in the order of the copies, and a burst costs the memory of one.
    QThreadPool m_texts;
    QThreadPool m_pictures;
};

} // namespace Clipboard
