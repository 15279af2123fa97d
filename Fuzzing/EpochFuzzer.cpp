#include "Actions/ContentDetectors.h"
#include "Fuzzer.h"
#include "Support/WhiteSpace.h"

#include <QDateTime>

using namespace ClipboardCore;

/// The first line names a time zone.
void Fuzzer::run(QByteArrayView input)
{
    const qsizetype lineEnd = input.indexOf('\n');
    if (lineEnd < 0)
        return;
    // Rules in the place of a name can be days away from UTC, which no zone of the world is.
    const QByteArray name = input.first(lineEnd).toByteArray();
    const QTimeZone zone = QTimeZone::isTimeZoneIdAvailable(name) ? QTimeZone(name) : QTimeZone();
    const Utf8Text content = text(input.sliced(lineEnd + 1));
    const auto date = ContentDetectors::epochDate(content, zone);
    if (!date)
        return;
    const qint64 number = WhiteSpace::trimmed(content.utf8()).toByteArray().toLongLong();
    const QDateTime read = QDateTime::fromString(*date, Qt::ISODate);
    constexpr qint64 afterLast = 4102444800; // 2100-01-01
    require(read.toSecsSinceEpoch() == (number < afterLast ? number : number / 1000), "it is the same moment");
    if (zone.isValid())
        require(read.offsetFromUtc() == zone.offsetFromUtc(read), "it is told in the time zone");
}
