#pragma once

#include <QByteArray>
#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QLatin1String>
#include <QMap>
#include <QString>

namespace Clipboard {

/// What the Secret Service API calls things.
namespace SecretService {

inline constexpr QLatin1String name("org.freedesktop.secrets");
inline constexpr QLatin1String path("/org/freedesktop/secrets");
inline constexpr QLatin1String serviceInterface("org.freedesktop.Secret.Service");
inline constexpr QLatin1String collectionInterface("org.freedesktop.Secret.Collection");
inline constexpr QLatin1String itemInterface("org.freedesktop.Secret.Item");
inline constexpr QLatin1String promptInterface("org.freedesktop.Secret.Prompt");
/// In the place of an object that there is not.
inline constexpr QLatin1String nothing("/");

/// By which an item is found again.
using Attributes = QMap<QString, QString>;

struct Secret
{
    QDBusObjectPath session;
    QByteArray parameters{};
    QByteArray value{};
    QString contentType{};
};

QDBusArgument& operator<<(QDBusArgument& argument, const Secret& secret);
const QDBusArgument& operator>>(const QDBusArgument& argument, Secret& secret);

/// So that they can be sent.
void registerTypes();

} // namespace SecretService

} // namespace Clipboard

Q_DECLARE_METATYPE(Clipboard::SecretService::Secret)
