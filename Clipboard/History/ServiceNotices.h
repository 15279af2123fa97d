#pragma once

#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>

namespace Clipboard {

/// What keeps a part of the program from its work. The tray says all of it; the panel says one thing at a time, in its
/// footer, instead of a notice that pops up again and again. Main thread only.
class ServiceNotices final : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;

    /// A problem that stands until it is cleared; of a known `id` the text is replaced. `text` is a whole sentence for
    /// the user, such as "Super+Shift+V is in use by another program.".
    void raise(const QString& id, const QString& text);
    /// Something that happened once and is over: it goes when the panel has shown it.
    void tell(const QString& id, const QString& text);
    /// The problem is gone. An unknown `id` does nothing.
    void clear(const QString& id);

    /// All of them, oldest first.
    [[nodiscard]] QStringList texts() const;
    /// The text of that one; empty when there is none.
    [[nodiscard]] QString textOf(const QString& id) const;
    /// The one for the panel: what is said only once comes before what stands, then the latest. Empty for none.
    [[nodiscard]] QString text() const;
    /// The user has seen text().
    void markSeen();

signals:
    void changed();

private:
    struct Notice
    {
        QString id;
        QString text;
        bool isSaidOnce = false;
        friend bool operator==(const Notice&, const Notice&) = default;
    };
    void put(const Notice& notice);
    [[nodiscard]] qsizetype shown() const; // -1 for none

    QList<Notice> m_notices;
};

} // namespace Clipboard
