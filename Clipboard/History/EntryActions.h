#pragma once

#include "Actions/SmartActions.h"

#include <QList>
#include <QObject>
#include <QString>
#include <QThreadPool>
#include <QUuid>

#include <functional>
#include <memory>
#include <optional>

namespace Clipboard {

/// A smart action counts as under way for as long as anybody holds this. To be dropped on the main thread.
using ActionUnderWay = std::shared_ptr<const void>;

/// Finds out what can be done with an entry, and has it done: both off the main thread, for either takes its time with
/// a large entry. Main thread only.
class EntryActions final : public QObject
{
    Q_OBJECT
public:
    using Catalogue = std::function<QList<ClipboardCore::SmartAction>(const ClipboardCore::ClipItem&)>;
    using Done = std::function<void(const ClipboardCore::SmartActionResult&, ActionUnderWay)>;

    /// `catalogue` is called on any thread.
    explicit EntryActions(Catalogue catalogue);
    ~EntryActions() override;

    /// What can be done with that entry: for a small one at once; for a large one none yet, and found() follows. The
    /// answer for the latest entry is remembered.
    [[nodiscard]] QList<ClipboardCore::SmartAction> of(const ClipboardCore::ClipItem& item);
    /// False while the answer for the latest entry is still to come.
    [[nodiscard]] bool areFound() const { return m_latest.isFound; }

    /// Runs the action of that entry, after those that were run before, and hands over its result. The action is under
    /// way until `done` lets go of what it is given.
    void run(const ClipboardCore::SmartAction& action, const QUuid& entry, Done done);
    /// Whether the entry's action of that label is under way.
    [[nodiscard]] bool isUnderWay(const QUuid& entry, const QString& label) const;

signals:
    void found();
    void underWayChanged();

private:
    struct Latest
    {
        std::optional<QUuid> entry;
        QList<ClipboardCore::SmartAction> actions;
        bool isFound = true;
    };
    struct Key
    {
        QUuid entry;
        QString label;
        bool operator==(const Key&) const = default;
    };
    [[nodiscard]] ActionUnderWay begin(const Key& key);

    Catalogue m_catalogue;
    Latest m_latest; // asked for on every redraw
    QList<Key> m_underWay;
    // One thread each: a list never waits for a result, and results come in the order in which they were asked for.
    QThreadPool m_finding;
    QThreadPool m_running;
};

} // namespace Clipboard
