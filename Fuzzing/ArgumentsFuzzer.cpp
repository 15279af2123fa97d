#include "BusContent.h"
#include "CommandLine.h"
#include "Duration.h"
#include "EntryQuery.h"
#include "Fuzzer.h"
#include "PreferenceTable.h"
#include "Support/KeyChord.h"

#include <algorithm>

using namespace Clipboard;
using namespace ClipboardCore;
using namespace Qt::StringLiterals;
using Fuzzer::require;

namespace {

void checkCommandLine(const QStringList& arguments)
{
    using Command::Syntax;
    const Syntax syntax{"list"_L1, "ENTRY"_L1, 1, 3, {{"--type"_L1, Syntax::Takes::value}, {"--json"_L1}}, ""_L1};
    const auto parsed = Command::parse(syntax, arguments);
    const auto* line = std::get_if<Command::CommandLine>(&parsed);
    if (line == nullptr)
        return;
    require(line->operands.size() >= syntax.fewestOperands && line->operands.size() <= syntax.mostOperands,
            "there are as many operands as the command takes");
    const auto isKnown = [&syntax](const QString& name) {
        return std::ranges::find(syntax.options, name, &Syntax::Option::name) != syntax.options.cend();
    };
    const QStringList names = line->options.keys();
    require(std::ranges::all_of(names, isKnown), "it has those options");
    const auto again = Command::parse(syntax, QStringList{u"--"_s} + line->operands);
    require(std::get<Command::CommandLine>(again).operands == line->operands, "behind two dashes all are operands");
}

void checkPreferences(const QStringList& values)
{
    for (const Preference& preference : preferenceTable()) {
        if (preference.whatIsWrong(values))
            continue;
        const QStringList kept = preference.normalized(values);
        require(!preference.whatIsWrong(kept), "what is kept could have been chosen");
        require(preference.normalized(kept) == kept, "and stays as it is");
    }
    const auto chord = KeyChord::fromText(values.constFirst());
    require(!chord || KeyChord::fromText(chord->text()) == chord, "a chord is read as it is written");
    const auto duration = Command::duration(values.constFirst());
    require(!duration || (duration->count() >= 1 && duration->count() <= 604'800), "at least a second, at most a week");
}

QList<ClipItem> someEntries()
{
    QList<ClipItem> items;
    for (int i = 0; i < 4; ++i) {
        const QUuid id(0x0F1E2D3C, 0, ushort(i), 0, 0, 0, 0, 0, 0, 0, 0);
        items.append({id,
                      allClipTypes[size_t(i)],
                      Utf8Text::fromUtf8("Straße " + QByteArray::number(i)),
                      {},
                      {},
                      double(i),
                      i < 2});
    }
    return items;
}

/// As options of the bus: "key=value", of which some are numbers and some are true.
void checkQuery(const QStringList& arguments)
{
    static const QList<ClipItem> items = someEntries();
    QVariantMap options;
    for (const QString& argument : arguments) {
        const QString value = argument.section(u'=', 1);
        bool isNumber = false;
        const uint number = value.toUInt(&isNumber);
        const QVariant text = value == "true"_L1 ? QVariant(true) : QVariant(value);
        options.insert(argument.section(u'=', 0, 0), isNumber ? QVariant(number) : text);
    }
    const auto query = Bus::EntryQuery::from(options);
    if (query) {
        const QList<Bus::BusEntry> found = query->run(items);
        require(found.size() <= query->limit.value_or(quint32(items.size())), "there are no more than the limit");
    }
    const qsizetype position = Bus::positionOf(arguments.constFirst(), items);
    require(position >= -1 && position < items.size(), "an entry is meant that is there");
}

} // namespace

/// Each line is an argument.
void Fuzzer::run(QByteArrayView input)
{
    const QStringList arguments = QString::fromUtf8(input).split(u'\n');
    checkCommandLine(arguments);
    checkPreferences(arguments);
    checkQuery(arguments);
    require(Bus::fromWire(*Bus::toWire(input.toByteArray()), input.size()) == input, "over the bus it is the same");
}
