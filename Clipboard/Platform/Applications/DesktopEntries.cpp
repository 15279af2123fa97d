#include "DesktopEntries.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QSet>

#include <algorithm>

namespace Clipboard {

using namespace Qt::StringLiterals;

namespace {

// The longest entries carry a hundred translations of each text; what is longer is no desktop entry.
constexpr qint64 maxEntryBytes = qint64(512) * 1024;
// Several times what a full installation has.
constexpr size_t maxEntries = 10'000;

const QLatin1String suffix(".desktop");

QString unescaped(const QByteArray& value)
{
    QString text = QString::fromUtf8(value);
    text.replace("\\s"_L1, " "_L1).replace("\\\\"_L1, "\\"_L1);
    return text;
}

/// The program of an Exec line, without its folder, its arguments and the quotes around it.
QString executableOf(const QByteArray& exec)
{
    const QString line = unescaped(exec).trimmed();
    const bool isQuoted = line.startsWith(u'"');
    const qsizetype begin = isQuoted ? 1 : 0;
    qsizetype end = line.indexOf(isQuoted ? u'"' : u' ', begin);
    if (end < 0)
        end = line.size();
    return line.sliced(begin, end - begin).section(u'/', -1);
}

bool isSame(const QString& left, const QString& right)
{
    return !left.isEmpty() && left.compare(right, Qt::CaseInsensitive) == 0;
}

} // namespace

std::optional<DesktopEntries::Entry> DesktopEntries::parse(const QString& id, const QByteArray& text,
                                                           const QString& language)
{
    QHash<QByteArray, QByteArray> values;
    bool isInGroup = false;
    for (const QByteArray& rawLine : text.split('\n')) {
        const QByteArray line = rawLine.trimmed();
        if (line.startsWith('['))
            isInGroup = line == "[Desktop Entry]";
        const qsizetype equals = line.indexOf('=');
        if (isInGroup && equals > 0 && !line.startsWith('#'))
            values.insert(line.first(equals).trimmed(), line.sliced(equals + 1).trimmed());
    }
    if (values.value("Type") != "Application" || values.value("Hidden") == "true")
        return {};
    Entry entry;
    entry.id = id;
    for (const QString& locale : {language, language.section(u'_', 0, 0)}) {
        if (entry.name.isEmpty())
            entry.name = unescaped(values.value("Name[" + locale.toUtf8() + "]"));
    }
    if (entry.name.isEmpty())
        entry.name = unescaped(values.value("Name"));
    entry.icon = unescaped(values.value("Icon"));
    entry.windowClass = unescaped(values.value("StartupWMClass"));
    entry.executable = executableOf(values.value("Exec"));
    entry.isShown = values.value("NoDisplay") != "true";
    return entry;
}

DesktopEntries::DesktopEntries(const QStringList& folders, const QString& language)
{
    QSet<QString> met; // an entry hides those of the same id in later folders, also when it says "deleted"
    for (const QString& folder : folders) {
        QDirIterator files(folder, {u"*"_s + suffix}, QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext() && m_entries.size() < maxEntries) {
            const QString path = files.next();
            QString id = QDir(folder).relativeFilePath(path).chopped(suffix.size());
            id.replace(u'/', u'-');
            if (met.contains(id))
                continue;
            met.insert(id);
            QFile file(path);
            if (!file.open(QIODevice::ReadOnly))
                continue;
            if (auto entry = parse(id, file.read(maxEntryBytes), language))
                m_entries.push_back(*std::move(entry));
        }
    }
    // Helpers that no menu shows often claim the same class or program as the application itself.
    std::stable_partition(m_entries.begin(), m_entries.end(), [](const Entry& entry) { return entry.isShown; });
}

const DesktopEntries::Entry* DesktopEntries::find(const QString& id) const
{
    const auto found = std::ranges::find(m_entries, id, &Entry::id);
    return found == m_entries.end() ? nullptr : &*found;
}

const DesktopEntries::Entry* DesktopEntries::find(const Traits& traits) const
{
    const auto first = [this](const auto& matches) -> const Entry* {
        const auto found = std::ranges::find_if(m_entries, matches);
        return found == m_entries.end() ? nullptr : &*found;
    };
    if (const Entry* entry = first([&](const Entry& one) { return isSame(traits.applicationID, one.id); }))
        return entry;
    for (const QString& name : {traits.windowClass, traits.windowInstance}) {
        if (const Entry* entry = first([&](const Entry& one) { return isSame(name, one.windowClass); }))
            return entry;
    }
    for (const QString& name : {traits.windowClass, traits.windowInstance}) {
        // Ids may be names turned around: "org.gnome.gedit" is the application whose class is "gedit".
        const auto names = [&](const Entry& one) {
            return isSame(name, one.id) || isSame(name, one.id.section(u'.', -1));
        };
        if (const Entry* entry = first(names))
            return entry;
    }
    return first([&](const Entry& one) { return isSame(traits.executable, one.executable); });
}

} // namespace Clipboard
