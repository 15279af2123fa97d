#pragma once

#include "ForeignClient.h"
#include "VirtualSession.h"

#include <QTest>

namespace Clipboard::Testing {

/// Makes the session this process's own desktop.
inline void enter(const VirtualSession& session)
{
    if (!session.failure().isEmpty())
        qFatal("%s", qPrintable(session.failure()));
    const auto& environment = session.environment();
    for (const QString& name : environment.keys())
        qputenv(name.toLatin1().constData(), environment.value(name).toLocal8Bit());
}

/// Functions that share a session without a window manager.
class SessionTest : public QObject
{
    Q_OBJECT
protected:
    [[nodiscard]] QByteArray display() const { return m_session->display().toLatin1(); }
    /// What another program gets.
    [[nodiscard]] QByteArray pasted(const QByteArray& target = "UTF8_STRING",
                                    const QByteArray& selection = "CLIPBOARD") const
    {
        return ForeignClient(display(), selection).convert(target).value_or(ForeignClient::Received()).bytes;
    }

    std::unique_ptr<VirtualSession> m_session;

protected slots:
    void initTestCase()
    {
        m_session = std::make_unique<VirtualSession>(VirtualSession::Options{.windowManager = false});
        QVERIFY2(m_session->failure().isEmpty(), qPrintable(m_session->failure()));
    }
};

} // namespace Clipboard::Testing
