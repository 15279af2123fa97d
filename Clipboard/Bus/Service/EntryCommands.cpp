#include "BusContent.h"
#include "BusEntry.h"
#include "BusNames.h"
#include "BusService.h"
#include "EntryQuery.h"
#include "History/CopiedFile.h"
#include "HistoryViewModel.h"
#include "OffMainThread.h"
#include "Sealing/StoredFile.h"
#include "SelectionLimits.h"
#include "Support/RegularFile.h"

#include <QDBusArgument>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusUnixFileDescriptor>
#include <QDBusVariant>
#include <QFile>

#include <algorithm>

#include <fcntl.h>

/// The methods of the bus that have to do with entries.
namespace Clipboard::Bus {

using namespace Qt::StringLiterals;
using ClipboardCore::ClipItem;
using ClipboardCore::ClipType;
namespace CopiedFile = ClipboardCore::CopiedFile;
using ClipboardCore::SmartAction;

namespace {

/// The types that Get gives an entry as; the first one is meant when none is named.
QStringList typesOf(const ClipItem& item)
{
    switch (item.type) {
    case ClipType::image:
        return {u"image/png"_s};
    case ClipType::file:
        return {u"text/plain"_s, u"text/uri-list"_s};
    case ClipType::text:
    case ClipType::link:
    case ClipType::color:
    case ClipType::code:
        break;
    }
    return {u"text/plain"_s};
}

/// What is on disk goes as it is, opened for the reader, unless it is sealed; nothing when it is gone.
std::optional<QVariant> contentOf(const ClipItem& item, const QString& type)
{
    const QString path = item.type == ClipType::image ? item.content.toString() : QString();
    if (path.isEmpty()) {
        const bool asURL = type == "text/uri-list"_L1;
        return toWire(asURL ? CopiedFile::url(item.content.utf8()).toEncoded() + "\r\n" : item.content.utf8());
    }
    if (ClipboardCore::StoredFile::isSealed(path)) {
        const auto picture = ClipboardCore::StoredFile::readAll(path);
        return picture ? toWire(*picture) : std::nullopt;
    }
    const int descriptor = ClipboardCore::RegularFile::open(QFile::encodeName(path), O_RDONLY);
    if (descriptor < 0)
        return std::nullopt;
    QDBusUnixFileDescriptor file;
    file.giveFileDescriptor(descriptor);
    return QVariant::fromValue(file);
}

bool isFileGone(const ClipItem& item)
{
    const bool isOnDisk = item.type == ClipType::image || item.type == ClipType::file;
    return isOnDisk && !CopiedFile::status(item.content.utf8());
}

const SmartAction* actionNamed(const QString& label, const QList<SmartAction>& actions)
{
    const auto found = std::ranges::find_if(
        actions, [&label](const SmartAction& action) { return action.label.compare(label, Qt::CaseInsensitive) == 0; });
    return found == actions.cend() ? nullptr : &*found;
}

} // namespace

std::optional<ClipItem> BusService::named(const QDBusMessage& message)
{
    const QString name = message.arguments().constFirst().toString();
    const QList<ClipItem>& items = m_program.history.items();
    const qsizetype position = positionOf(name, items);
    if (position >= 0)
        return items.at(position);
    refuse(message, {Error::noSuchEntry, u"there is no entry '%1'"_s.arg(name)});
    return std::nullopt;
}

void BusService::list(const QDBusMessage& message)
{
    const auto query = EntryQuery::from(qdbus_cast<QVariantMap>(message.arguments().constFirst()));
    if (!query)
        return refuse(message, {QDBusError::errorString(QDBusError::InvalidArgs), u"no such option"_s});
    const auto find = [query = *query, items = m_program.history.items()] { return query.run(items); };
    runOffMainThread(m_queries, this, find,
                     [this, message](const QList<BusEntry>& found) { answer(message, {QVariant::fromValue(found)}); });
}

void BusService::findEntry(const QDBusMessage& message)
{
    const QList<ClipItem>& items = m_program.history.items();
    if (const auto item = named(message)) {
        const auto position = std::ranges::find(items, item->id, &ClipItem::id) - items.cbegin();
        answer(message, {QVariant::fromValue(BusEntry::from(*item, position))});
    }
}

void BusService::get(const QDBusMessage& message)
{
    const auto item = named(message);
    if (!item)
        return;
    const QStringList types = typesOf(*item);
    const QString wanted = message.arguments().at(1).toString();
    const QString type = wanted.isEmpty() ? types.first() : wanted;
    if (!types.contains(type))
        return refuse(message, {Error::noSuchType, u"the entry is there as %1 only"_s.arg(types.join(u", "_s))});
    const auto read = [item = *item, type] { return contentOf(item, type); };
    runOffMainThread(m_queries, this, read, [this, message](const std::optional<QVariant>& content) {
        if (content)
            answer(message, {QVariant::fromValue(QDBusVariant(*content))});
        else
            refuse(message, {Error::fileGone, u"the entry's file cannot be read"_s});
    });
}

void BusService::add(const QDBusMessage& message)
{
    const QString type = message.arguments().constFirst().toString();
    if (!EntryIntake::takes(type))
        return refuse(message, {Error::noSuchType, u"no entry is made of '%1'"_s.arg(type)});
    const QVariant content = message.arguments().at(1).value<QDBusVariant>().variant();
    m_intake.take(type, content, [this, message](const std::optional<ClipItem>& item) {
        const auto id = item ? m_program.history.record(*item) : std::nullopt;
        if (!id)
            return refuse(message, {Error::badContent, u"there is nothing in it that can be recorded"_s});
        answerWhenRecorded(message, {idText(*id)});
    });
}

void BusService::command(const QDBusMessage& message, void (HistoryViewModel::*carryOut)(const ClipItem&))
{
    const auto item = named(message);
    if (!item)
        return;
    const bool isGone = isFileGone(*item);
    (m_program.history.*carryOut)(*item);
    if (isGone)
        return refuse(message, {Error::fileGone, u"the entry's file is gone"_s});
    answer(message);
}

void BusService::copy(const QDBusMessage& message)
{
    command(message, &HistoryViewModel::copy);
}

void BusService::paste(const QDBusMessage& message)
{
    m_program.aim();
    command(message, &HistoryViewModel::paste);
}

void BusService::annotate(const QDBusMessage& message)
{
    const auto item = named(message);
    if (item && item->type != ClipType::image)
        return refuse(message, {Error::noSuchType, u"the entry is no picture"_s});
    if (item)
        command(message, &HistoryViewModel::annotate);
}

void BusService::pin(const QDBusMessage& message)
{
    const auto item = named(message);
    if (item && !item->isPinned)
        m_program.history.togglePin(*item);
    if (item)
        answerWhenRecorded(message);
}

void BusService::unpin(const QDBusMessage& message)
{
    const auto item = named(message);
    if (item && item->isPinned)
        m_program.history.togglePin(*item);
    if (item)
        answerWhenRecorded(message);
}

void BusService::remove(const QDBusMessage& message)
{
    if (const auto item = named(message)) {
        m_program.history.remove(*item);
        answerWhenRecorded(message);
    }
}

void BusService::clear(const QDBusMessage& message)
{
    if (message.arguments().constFirst().toBool())
        m_program.history.clearEverything();
    else
        m_program.history.clearHistory();
    answerWhenRecorded(message);
}

void BusService::listActions(const QDBusMessage& message)
{
    const auto item = named(message);
    if (!item)
        return;
    const auto find = [catalogue = m_program.history.actionCatalogue(), item = *item] {
        QStringList labels;
        for (const SmartAction& action : catalogue(item))
            labels.append(action.label);
        return labels;
    };
    runOffMainThread(m_queries, this, find, [this, message](const QStringList& labels) { answer(message, {labels}); });
}

void BusService::run(const QDBusMessage& message)
{
    const auto item = named(message);
    if (!item)
        return;
    const auto find = [catalogue = m_program.history.actionCatalogue(), item = *item] { return catalogue(item); };
    runOffMainThread(m_queries, this, find, [this, message, id = item->id](const QList<SmartAction>& actions) {
        const QString label = message.arguments().at(1).toString();
        const SmartAction* action = actionNamed(label, actions);
        if (!action)
            return refuse(message, {Error::noSuchAction, u"the entry has no action '%1'"_s.arg(label)});
        m_program.history.runSmartAction(*action, id);
        answer(message);
    });
}

} // namespace Clipboard::Bus
