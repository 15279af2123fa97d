#pragma once

#include "Bench.h"
#include "ForeignOwner.h"
#include "Keyring.h"

#include <QHash>
#include <QRandomGenerator>
#include <QSet>
#include <QString>
#include <QThread>

namespace Clipboard::Benchmarks {

/// Kills the program again and again, in the middle of whatever it is doing, and looks at what is there afterwards.
/// What is copied is the same each time; when the end comes is not.
class Kills final
{
public:
    /// What else happens to the program.
    enum class Meanwhile { nothing, encryptionIsSwitched };

    Kills(QString name, Testing::VirtualSession::Kind kind, Meanwhile meanwhile = Meanwhile::nothing);
    ~Kills();
    Q_DISABLE_COPY_MOVE(Kills)

    /// Reports what was lost.
    void run(int times);

private:
    using Told = QHash<QString, QString>; // the types of entries by their ids

    [[nodiscard]] Told copyUntilKilled(int round);
    void copySomething(Testing::ForeignOwner& owner, const QByteArray& text);
    void switchEncryption();
    [[nodiscard]] qsizetype lostOf(const Told& told);
    [[nodiscard]] bool isPictureThere(const QString& id);
    [[nodiscard]] bool isHistoryWhole() const;
    /// The ids of all entries.
    [[nodiscard]] QSet<QString> listed();

    QString m_name;
    Bench m_bench;
    Meanwhile m_meanwhile;
    QRandomGenerator m_random{1};
    Testing::Keyring m_keyring;
    QThread m_answering; // of the keyring
};

} // namespace Clipboard::Benchmarks
