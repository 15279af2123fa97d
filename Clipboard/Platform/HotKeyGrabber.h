#pragma once

#include <QObject>
#include <QString>

namespace Clipboard {

/// The one key combination that reaches Tessaly from everywhere: Super+Shift+V.
class HotKeyGrabber : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;

    /// Asks for the combination; granted() or failed() follows, and again whenever that changes.
    virtual void grab() = 0;

signals:
    void pressed();
    void granted();
    /// `reason` is a whole sentence for the user, such as "Super+Shift+V is in use by another program."
    void failed(const QString& reason);
};

} // namespace Clipboard
