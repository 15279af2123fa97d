#include "LoginItem.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStandardPaths>
#include <QStringList>

#include <utility>

namespace Clipboard {

using namespace Qt::StringLiterals;

namespace {

// An entry is a few lines; what is larger was not written for this purpose.
constexpr qint64 maxEntryBytes = qint64{64} * 1024;

/// One argument of an Exec line. Reserved characters stand in double quotes, of which four need a backslash, which is
/// itself escaped once more as in every string value; a percent sign would start a field code.
/// (https://specifications.freedesktop.org/desktop-entry-spec/latest/exec-variables.html)
QString execArgument(const QString& argument)
{
    QString quoted;
    for (const QChar character : argument) {
        if (u"\"`$\\"_s.contains(character))
            quoted += u"\\\\"_s;
        if (character == u'\\' || character == u'%')
            quoted += character;
        quoted += character;
    }
    return u'"' + quoted + u'"';
}

/// The value of a key of the [Desktop Entry] group, lower-cased; empty when it is not there.
QString entryValue(const QString& entry, QLatin1String key)
{
    bool inGroup = false;
    const QStringList lines = entry.split(u'\n');
    for (const QString& rawLine : lines) {
        const QString line = rawLine.trimmed();
        if (line.startsWith(u'['))
            inGroup = line == "[Desktop Entry]"_L1;
        else if (const qsizetype equals = line.indexOf(u'=');
                 inGroup && line.first(std::max<qsizetype>(equals, 0)).trimmed() == key)
            return line.mid(equals + 1).trimmed().toLower();
    }
    return {};
}

/// Empty when there is none.
QString entryIn(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.read(maxEntryBytes)) : QString();
}

/// Desktops switch an entry off either by the described key or by GNOME's own.
bool isSwitchedOn(const QString& entry)
{
    return !entry.isEmpty() && entryValue(entry, "Hidden"_L1) != "true"_L1 &&
           entryValue(entry, "X-GNOME-Autostart-enabled"_L1) != "false"_L1;
}

} // namespace

LoginItem::LoginItem()
    : LoginItem(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + u"/autostart"_s,
                QCoreApplication::applicationFilePath())
{
}

LoginItem::LoginItem(const QString& autostartFolder, QString executable)
    : m_file(autostartFolder + u"/com.tessaly.Tessaly.desktop"_s)
    , m_oldFile(autostartFolder + u"/tessaly.desktop"_s)
    , m_executable(std::move(executable))
{
}

bool LoginItem::isEnabled() const
{
    return isSwitchedOn(entryIn(m_file));
}

bool LoginItem::toggle()
{
    QString error;
    if (!(isEnabled() ? disable(error) : enable(error)))
        qWarning("LoginItem toggle failed: %s", qPrintable(error));
    return isEnabled();
}

bool LoginItem::set(bool isEnabled)
{
    return (this->isEnabled() == isEnabled ? isEnabled : toggle()) == isEnabled;
}

QString LoginItem::folder() const
{
    return QFileInfo(m_file).path();
}

void LoginItem::adoptOldEntry() const
{
    const QString entry = entryIn(m_oldFile);
    if (entryValue(entry, "Name"_L1) != "tessaly"_L1)
        return; // there is none, or it is somebody else's
    QString error;
    const bool isKept = QFileInfo::exists(m_file) || !isSwitchedOn(entry) || enable(error);
    if (!isKept || !QFile::remove(m_oldFile))
        qWarning("LoginItem toggle failed: %s", qPrintable(error));
}

bool LoginItem::enable(QString& error) const
{
    QDir().mkpath(QFileInfo(m_file).path());
    QSaveFile file(m_file);
    const QString entry =
        u"[Desktop Entry]\nType=Application\nName=Tessaly\nComment=Clipboard history\nExec=%1\n"
        "Icon=com.tessaly.Tessaly\nTerminal=false\nX-GNOME-Autostart-enabled=true\n"_s.arg(execArgument(m_executable));
    if (!file.open(QIODevice::WriteOnly) || file.write(entry.toUtf8()) < 0 || !file.commit()) {
        error = file.errorString();
        return false;
    }
    return true;
}

bool LoginItem::disable(QString& error) const
{
    QFile file(m_file);
    if (!file.remove()) {
        error = file.errorString();
        return false;
    }
    return true;
}

} // namespace Clipboard
