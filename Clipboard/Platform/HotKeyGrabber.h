#pragma once

#include "Support/KeyChord.h"

#include <QObject>
#include <QString>

namespace Clipboard {

/// The one key combination that reaches Tessaly from everywhere.
class HotKeyGrabber : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;

    /// Which one is asked for from now on.
    void setChord(const ClipboardCore::KeyChord& chord) { m_chord = m_bound = chord; }
    [[nodiscard]] const ClipboardCore::KeyChord& chord() const { return m_chord; }
    /// Which one it is, once granted: where the desktop keeps the keys, its user may have chosen another one there.
    [[nodiscard]] const ClipboardCore::KeyChord& bound() const { return m_bound; }

    /// Asks for the combination, and lets an earlier one go; granted() or failed() follows, and again whenever that
    /// changes.
    virtual void grab() = 0;
    /// Who has the key for us once it is granted, in a word for `status`; empty for nobody.
    [[nodiscard]] virtual QString holder() const { return {}; }

signals:
    void pressed();
    void granted();
    /// `reason` is a whole sentence for the user, with %1 for the combination: "%1 is in use by another program."
    void failed(const QString& reason);

protected:
    void setBound(const ClipboardCore::KeyChord& chord) { m_bound = chord; }

private:
    ClipboardCore::KeyChord m_chord{true, false, false, true, QStringLiteral("V")};
    ClipboardCore::KeyChord m_bound = m_chord;
};

} // namespace Clipboard
