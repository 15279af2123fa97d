#include "Functions.h"
#include "Preferences.h"
#include "Terminal.h"

/// The preferences, which are kept in the user defaults: the program need not run, and hears of it when it does.
namespace Clipboard::Command::Functions {

using namespace Qt::StringLiterals;

namespace {

/// A line with the key and the value, whose words have a tab between them.
Outcome listAll()
{
    const Preferences preferences;
    for (const Preference& preference : preferenceTable()) {
        const QStringList words = QStringList(preference.key) + preferences.values(preference.key);
        if (!Terminal::printLine(words.join(u'\t')))
            return cannotWrite();
    }
    return std::nullopt;
}

Outcome print(const Preference& preference)
{
    const QStringList words = Preferences().values(preference.key);
    for (const QString& word : words) {
        if (!Terminal::printLine(word))
            return cannotWrite();
    }
    return std::nullopt;
}

Outcome set(const Preference& preference, const QStringList& values)
{
    Preferences preferences;
    if (const auto wrong = preference.whatIsWrong(values))
        return Failure{ExitCode::usage, *wrong};
    if (const auto wrong = preferences.set(preference, values))
        return Failure{ExitCode::failed, *wrong};
    return std::nullopt;
}

} // namespace

Outcome config(const CommandLine& line, const BusClient& /*client*/)
{
    const QStringList& words = line.operands;
    const QString verb = words.value(0, u"list"_s);
    if (verb == "list"_L1 && words.size() <= 1)
        return listAll();
    const bool reads = verb == "get"_L1 && words.size() == 2;
    if (!reads && !(verb == "set"_L1 && words.size() >= 2))
        return Failure{ExitCode::usage, u"write 'config list', 'config get KEY' or 'config set KEY VALUE…'"_s};
    const Preference* preference = findPreference(words.at(1));
    if (!preference)
        return Failure{ExitCode::usage, u"there is no preference '%1'; 'config' lists them"_s.arg(words.at(1))};
    return reads ? print(*preference) : set(*preference, words.mid(2));
}

} // namespace Clipboard::Command::Functions
