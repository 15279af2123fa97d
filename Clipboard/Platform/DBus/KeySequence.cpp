#include "KeySequence.h"

namespace Clipboard {

QDBusArgument& operator<<(QDBusArgument& argument, const KeySequence& sequence)
{
    argument.beginStructure();
    argument.beginArray(QMetaType::fromType<int>());
    for (const int key : sequence.keys)
        argument << key;
    argument.endArray();
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, KeySequence& sequence)
{
    sequence = {};
    argument.beginStructure();
    argument.beginArray();
    for (size_t i = 0; !argument.atEnd(); ++i) {
        int key = 0;
        argument >> key;
        if (i < sequence.keys.size())
            sequence.keys.at(i) = key;
    }
    argument.endArray();
    argument.endStructure();
    return argument;
}

} // namespace Clipboard
