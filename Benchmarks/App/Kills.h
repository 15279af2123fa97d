#pragma once

#include "Bench.h"

#include <QRandomGenerator>
#include <QSet>
#include <QString>

namespace Clipboard::Benchmarks {

/// Kills the program again and again, in the middle of whatever it is doing, and looks at what is there afterwards.
/// What is copied is the same each time; when the end comes is not.
class Kills final
{
public:
    Kills(QString name, Testing::VirtualSession::Kind kind);
    /// Reports what was lost.
    void run(int times);

private:
    [[nodiscard]] QSet<QString> copyUntilKilled(int round);
    /// The ids of all entries.
    [[nodiscard]] QSet<QString> listed();

    QString m_name;
    Bench m_bench;
    QRandomGenerator m_random{1};
};

} // namespace Clipboard::Benchmarks
