#include "GnomeHotKey.h"

#include "GnomeShortcut.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;

namespace Clipboard {

GnomeHotKey::GnomeHotKey()
{
    connect(&m_gsettings, &QProcess::finished, this,
            [this] { judge(QString::fromUtf8(m_gsettings.readAllStandardOutput()).trimmed()); });
    connect(&m_gsettings, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            judge({});
    });
}

bool GnomeHotKey::isThere()
{
    return GnomeShortcut::isDesktop();
}

void GnomeHotKey::grab()
{
    if (m_gsettings.state() == QProcess::NotRunning)
        m_gsettings.start(u"gsettings"_s, {u"get"_s, GnomeShortcut::schema(), u"binding"_s});
}

void GnomeHotKey::judge(const QString& binding)
{
    const QString accelerator = binding.startsWith(u'\'') ? binding.mid(1).chopped(1) : QString();
    if (accelerator.isEmpty()) {
        emit failed(QCoreApplication::translate(
            "HotKeyGrabber", "No program can take %1 on GNOME: “tessaly bind” puts it into its settings."));
        return;
    }
    setBound(GnomeShortcut::chordOf(accelerator).value_or(chord()));
    emit granted();
}

} // namespace Clipboard
