#include "JourneyTest.h"

#include "KwinCompositor.h"
#include "SwayCompositor.h"

namespace Clipboard::Testing {

JourneyTest::JourneyTest(const Options& options, Sessions sessions)
    : Journey(QStringLiteral(TESSALY_PROGRAM))
    , m_options(options)
    , m_sessions(sessions)
{
    const QByteArray desktop = qgetenv("TESSALY_DESKTOP");
    if (desktop == "sway")
        m_options.kind = VirtualSession::Kind::sway;
    if (desktop == "kwin")
        m_options.kind = VirtualSession::Kind::kwin;
}

void JourneyTest::fail(const QString& message, const Where& where)
{
    QTest::qFail(qPrintable(message), where.file_name(), where.line());
}

void JourneyTest::initTestCase()
{
    QString missing;
    if (isOnSway())
        missing = SwayCompositor::missing();
    if (isOnKwin())
        missing = KwinCompositor::missing();
    if (!missing.isEmpty())
        QSKIP(qPrintable(missing));
    if (m_sessions == Sessions::one)
        begin(m_options);
}

void JourneyTest::init()
{
    if (m_sessions == Sessions::onePerFunction)
        begin(m_options);
    if (!hasFailed())
        arrive();
}

void JourneyTest::cleanup()
{
    leave();
    if (m_sessions == Sessions::onePerFunction)
        end();
}

void JourneyTest::cleanupTestCase()
{
    if (m_sessions == Sessions::one) {
        conclude();
        end();
    }
}

} // namespace Clipboard::Testing
