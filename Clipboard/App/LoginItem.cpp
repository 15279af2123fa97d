#include "LoginItem.h"

#include <QDir>
#include <QFile>
#include <QLoggingCategory>
#include <QSaveFile>

using namespace Qt::StringLiterals;

namespace Clipboard {

namespace {

Q_LOGGING_CATEGORY(loginItemLog, "tessaly.login")

/// An autostart entry is a few hundred bytes; a longer file is not one of ours and is not worth reading.
constexpr qint64 largestEntry = 64 * 1024;

/// Quotes an argument of an Exec line (Desktop Entry Specification, "The Exec key"). A percent sign is doubled, since
/// it would start a field code; a backslash is doubled twice, once for the quotes and once for the value.
QString execArgument(const QString& argument)
{
    QString quoted = argument;
    quoted.replace(u'\\', u"\\\\\\\\"_s);
    for (const QChar special : {u'"', u'`', u'$'})
        quoted.replace(special, u"\\\\"_s + special);
    quoted.replace(u'%', u"%%"_s);
    return u'"' + quoted + u'"';
}

} // namespace

LoginItem::LoginItem(QString autostartFolder, QString program)
    : m_autostartFolder(std::move(autostartFolder))
    , m_program(std::move(program))
{
}

QString LoginItem::entryPath() const
{
    return m_autostartFolder + "/tessaly.desktop"_L1;
}

bool LoginItem::isEnabled() const
{
    QFile entry(entryPath());
    if (!entry.open(QIODevice::ReadOnly | QIODevice::Text))
        return false;
    bool hasExec = false;
    const QList<QByteArray> lines = entry.read(largestEntry).split('\n');
    for (const QByteArray& line : lines) {
        const QByteArray compact = line.simplified().replace(" = ", "=").toLower();
        if (compact == "hidden=true" || compact == "x-gnome-autostart-enabled=false")
            return false;
        hasExec = hasExec || compact.startsWith("exec=");
    }
    return hasExec;
}

bool LoginItem::toggle()
{
    QString error;
    if (isEnabled()) {
        QFile entry(entryPath());
        if (!entry.remove())
            error = entry.errorString();
    } else {
        QDir().mkpath(m_autostartFolder);
        QSaveFile entry(entryPath());
        const QString text = u"[Desktop Entry]\nType=Application\nName=Tessaly\nIcon=tessaly\nExec=%1\n"_s
                                 .arg(execArgument(m_program));
        if (!entry.open(QIODevice::WriteOnly) || entry.write(text.toUtf8()) < 0 || !entry.commit())
            error = entry.errorString();
    }
    if (!error.isEmpty())
        qCWarning(loginItemLog).noquote() << "LoginItem toggle failed: "_L1 + error;
    return isEnabled();
}

} // namespace Clipboard
