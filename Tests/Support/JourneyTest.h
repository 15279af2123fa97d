#pragma once

#include "Journey.h"

#include <QTest>

namespace Clipboard::Testing {

/// A test whose functions are journeys with the built program. Each has a session of its own, or all share one.
class JourneyTest : public QObject, public Journey
{
    Q_OBJECT
public:
    enum class Sessions { one, onePerFunction };

protected:
    explicit JourneyTest(const Options& options = {}, Sessions sessions = Sessions::onePerFunction);

    /// At the beginning of each function, and at its end.
    virtual void arrive() {}
    virtual void leave() {}
    /// Before the one session of all ends.
    virtual void conclude() {}

    /// Whether the desktop is that of X11; TESSALY_DESKTOP says which one it is to be.
    [[nodiscard]] bool isOnX11() const { return m_options.kind == VirtualSession::Kind::x11; }
    [[nodiscard]] bool isOnKwin() const { return m_options.kind == VirtualSession::Kind::kwin; }
    [[nodiscard]] bool isOnSway() const { return m_options.kind == VirtualSession::Kind::sway; }

    void fail(const QString& message, const Where& where) override;
    [[nodiscard]] bool hasFailed() const override { return QTest::currentTestFailed(); }

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase();

private:
    Options m_options;
    Sessions m_sessions;
};

} // namespace Clipboard::Testing
