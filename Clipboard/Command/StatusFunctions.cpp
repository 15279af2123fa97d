#include "Duration.h"
#include "EntryPrinter.h"
#include "Functions.h"
#include "PreviewLine.h"
#include "Terminal.h"

#include <QDBusArgument>
#include <QDateTime>
#include <QJsonArray>

/// The commands that have to do with the program itself.
namespace Clipboard::Command::Functions {

using namespace Qt::StringLiterals;

namespace {

constexpr int widestName = 12;

/// What came over the bus, without the bus's own wrappings.
QVariant unwrapped(const QVariant& value)
{
    if (value.metaType() != QMetaType::fromType<QDBusArgument>())
        return value;
    const auto argument = value.value<QDBusArgument>();
    if (argument.currentType() == QDBusArgument::ArrayType) {
        QVariantList list = qdbus_cast<QVariantList>(argument);
        for (QVariant& element : list)
            element = unwrapped(element);
        return list;
    }
    QVariantMap map = qdbus_cast<QVariantMap>(argument);
    for (QVariant& element : map)
        element = unwrapped(element);
    return map;
}

QString line(const QString& name, const QString& text)
{
    return Bus::withoutControls(name.leftJustified(widestName) + text) + u'\n';
}

QString recording(const QJsonObject& status)
{
    if (!status.value("paused"_L1).toBool())
        return u"on"_s;
    const QDateTime end = QDateTime::fromString(status.value("resumesAt"_L1).toString(), Qt::ISODate);
    return end.isValid() ? u"paused until "_s + end.toLocalTime().toString(u"yyyy-MM-dd HH:mm:ss"_s)
                         : u"paused; 'tessaly resume' ends that"_s;
}

QString skipped(const QJsonObject& reasons)
{
    QStringList counts;
    for (auto reason = reasons.begin(); reason != reasons.end(); ++reason)
        counts.append(u"%1 %2"_s.arg(reason.value().toInt()).arg(reason.key()));
    return counts.isEmpty() ? u"nothing"_s : counts.join(u", "_s);
}

QString asText(const QJsonObject& status)
{
    const auto number = [&status](QLatin1String key) { return QString::number(status.value(key).toInt()); };
    QString text = line(u"version"_s, status.value("version"_L1).toString());
    text += line(u"entries"_s, number("entries"_L1) + u", pinned "_s + number("pinned"_L1));
    text += line(u"recording"_s, recording(status));
    text += line(u"encrypted"_s, status.value("encrypted"_L1).toBool() ? u"yes"_s : u"no"_s);
    const QJsonArray services = status.value("services"_L1).toArray();
    for (const auto& element : services) {
        const QJsonObject service = element.toObject();
        const bool works = service.value("works"_L1).toBool();
        const QString holder = service.value("holder"_L1).toString();
        const QString working = holder.isEmpty() ? u"works"_s : u"works, by "_s + holder;
        text += line(service.value("name"_L1).toString(), works ? working : service.value("reason"_L1).toString());
        if (!works)
            text += line({}, service.value("advice"_L1).toString());
    }
    return text + line(u"skipped"_s, skipped(status.value("skipped"_L1).toObject()));
}

} // namespace

Outcome pause(const CommandLine& line, const BusClient& client)
{
    if (line.operands.isEmpty())
        return failureIn(client.call(u"Pause"_s, {0U}));
    const auto length = duration(line.operands.constFirst());
    if (!length)
        return Failure{ExitCode::usage, u"'%1' is no duration up to a week; write 90s, 45m, 2h or 1h30m"_s.arg(
                                            line.operands.constFirst())};
    return failureIn(client.call(u"Pause"_s, {static_cast<uint>(length->count())}));
}

Outcome status(const CommandLine& line, const BusClient& client)
{
    const Answer answer = client.call(u"Status"_s);
    if (Outcome failure = failureIn(answer))
        return failure;
    const auto status = QJsonObject::fromVariantMap(unwrapped(std::get<QVariantList>(answer).value(0)).toMap());
    const QString text = line.has("--json"_L1) ? compactJSON(status) + u'\n' : asText(status);
    return Terminal::write(text.toUtf8()) ? Outcome() : Outcome(cannotWrite());
}

} // namespace Clipboard::Command::Functions
