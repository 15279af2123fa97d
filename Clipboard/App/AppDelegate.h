#pragma once

#include "DisplayLoss.h"
#include "StatusItemController.h"

#include <QObject>
#include <QString>

#include <memory>

class QApplication;

namespace Clipboard {

/// The life of the program: starts everything, and writes the history whichever way the program ends. Main thread only.
class AppDelegate final : public QObject
{
    Q_OBJECT
public:
    AppDelegate(QApplication& application, Platform platform, const QString& dataFolder);
    ~AppDelegate() override;

    /// Lets others find the program.
    void announce();
    /// Writes the history where its file is gone.
    void keepHistory();

private:
    void willTerminate();

    StatusItemController m_statusItemController;
    DisplayLoss m_displayLoss;
};

} // namespace Clipboard
