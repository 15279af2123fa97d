#include "SecretService.h"

#include <QDBusMetaType>

namespace Clipboard {

QDBusArgument& SecretService::operator<<(QDBusArgument& argument, const Secret& secret)
{
    argument.beginStructure();
    argument << secret.session << secret.parameters << secret.value << secret.contentType;
    argument.endStructure();
    return argument;
}

const QDBusArgument& SecretService::operator>>(const QDBusArgument& argument, Secret& secret)
{
    argument.beginStructure();
    argument >> secret.session >> secret.parameters >> secret.value >> secret.contentType;
    argument.endStructure();
    return argument;
}

void SecretService::registerTypes()
{
    qDBusRegisterMetaType<Attributes>();
    qDBusRegisterMetaType<Secret>();
}

} // namespace Clipboard
