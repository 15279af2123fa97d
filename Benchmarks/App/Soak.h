#pragma once

#include "Bench.h"
#include "ForeignClient.h"
#include "Keyboard.h"

#include <QDBusConnection>
#include <QList>
#include <QRandomGenerator>
#include <QString>
#include <QVariant>

#include <algorithm>

namespace Clipboard::Benchmarks {

/// What the history has to be: pinned entries first, then the newest first.
class SoakModel final
{
public:
    struct Entry
    {
        QString type;
        QString content; // of a picture: its colour
        bool isPinned = false;
        qint64 time = 0;
    };

    void copy(const QString& type, const QString& content);
    void togglePin(qsizetype place);
    void remove(qsizetype place) { m_entries.removeAt(place); }
    /// All but what is pinned.
    void clear()
    {
        m_entries.removeIf([](const Entry& entry) { return !entry.isPinned; });
    }
    [[nodiscard]] const QList<Entry>& entries() const { return m_entries; }
    [[nodiscard]] qsizetype pinned() const { return std::ranges::count_if(m_entries, &Entry::isPinned); }

private:
    void insert(const Entry& entry);

    QList<Entry> m_entries;
    qint64 m_time = 0;
};

/// A life of months in minutes: copies of every kind, one after the other as fast as they are recorded, with what a
/// person does in between, beside a model of the history. What is done is the same each time.
class Soak final
{
public:
    Soak();
    /// Reports what it came to.
    void run(int copies);

private:
    void step();
    void copySomething();
    void copyText(const QString& type, const QString& text);
    void copyPicture(const QString& color);
    void copyFile(const QString& path);
    void copy(const QString& type, const QString& content,
              const QHash<QByteArray, Testing::ForeignClient::Answer>& answers);
    void changeSomething();
    void lookAround();
    void call(const QString& method, const QVariant& argument);
    void compare(const QString& what);

    Bench m_bench;
    Keyboard m_keyboard;
    Testing::ForeignClient m_owner;
    QDBusConnection m_bus;
    QRandomGenerator m_random{1};
    SoakModel m_model;
    int m_copies = 0;
};

} // namespace Clipboard::Benchmarks
