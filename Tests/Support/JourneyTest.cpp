#include "JourneyTest.h"

#include "SwayCompositor.h"

namespace Clipboard::Testing {

JourneyTest::JourneyTest(const Options& options, Sessions sessions)
    : Journey(QStringLiteral(TESSALY_PROGRAM))
    , m_options(options)
    , m_sessions(sessions)
{
    if (qgetenv("TESSALY_DESKTOP") == "sway")
        m_options.kind = VirtualSession::Kind::sway;
}

void JourneyTest::fail(const QString& message, const Where& where)
{
    QTest::qFail(qPrintable(message), where.file_name(), where.line());
}

void JourneyTest::initTestCase()
{
    const QString missing = isOnX11() ? QString() : SwayCompositor::missing();
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
