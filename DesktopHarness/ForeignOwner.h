#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QHash>

#include <cstdint>

namespace Clipboard::Testing {

/// Another program that copies, as well or as badly behaved as one wants it, whatever the desktop. It answers on a
/// thread of its own.
class ForeignOwner
{
public:
    /// How one target is answered.
    struct Answer
    {
        enum class Manner {
            AtOnce,           // the whole value
            InPieces,         // `pieceBytes` at a time
            Mute,             // not at all
            Refuse,           // with nothing
            Late,             // X11: at once, but not before answerLate() or refuseLate()
            EndlessPieces,    // pieces that never come to an end
            DieInTheMiddle,   // after two pieces the connection is closed
            StallInTheMiddle, // after two pieces nothing more comes
            // X11, after two pieces each:
            ChangeInTheMiddle, // the next one is of another type
            FallInTheMiddle,   // the window goes, and the program lives on
        };
        QByteArray bytes{};
        QByteArray type{}; // X11: of the reply; empty: the target's name
        int format = 8;
        Manner manner = Manner::AtOnce;
        uint32_t announcedBytes = 0; // X11: what is promised; 0: the truth
        qsizetype pieceBytes = 65536;
    };

    ForeignOwner() = default;
    virtual ~ForeignOwner() = default;
    Q_DISABLE_COPY_MOVE(ForeignOwner)

    /// Becomes the owner, with these targets; returns when the desktop has done it.
    virtual void copy(const QHash<QByteArray, Answer>& answers) = 0;
    void copyText(const QByteArray& utf8) { copy({{"UTF8_STRING", {.bytes = utf8}}}); }
    /// Gives the clipboard up and lives on, as a password manager does when its time is over.
    virtual void clear() = 0;
    /// Closes the connection, as the end of the process does.
    virtual void die() = 0;

    /// Those who follow the clipboard know by now what there is, or are asking.
    [[nodiscard]] virtual bool isLookedAt() const = 0;
    /// The targets whose content was asked for since the last copy(), in order.
    [[nodiscard]] virtual QByteArrayList contentAsked() const = 0;
    /// Those of them that have been answered: what is copied next comes after the answer.
    [[nodiscard]] virtual QByteArrayList answered() const = 0;
};

} // namespace Clipboard::Testing
