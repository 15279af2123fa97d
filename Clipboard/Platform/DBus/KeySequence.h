#pragma once

#include <QDBusArgument>
#include <QList>

#include <array>

namespace Clipboard {

/// Keys to be pressed one after the other, as the interface writes them: always four numbers, 0 for none.
struct KeySequence
{
    std::array<int, 4> keys{};
};
using KeySequences = QList<KeySequence>;

QDBusArgument& operator<<(QDBusArgument& argument, const KeySequence& sequence);
const QDBusArgument& operator>>(const QDBusArgument& argument, KeySequence& sequence);

} // namespace Clipboard
