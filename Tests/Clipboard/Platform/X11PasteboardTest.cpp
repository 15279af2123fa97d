#include "X11Pasteboard.h"
#include "SessionTest.h"

#include <QSignalSpy>

#include <functional>
#include <vector>

using namespace Clipboard;
using namespace Clipboard::Testing;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// The port's promises, kept by the adapter over a real server.
class X11PasteboardTest final : public SessionTest
{
    Q_OBJECT
private slots:
    void init();
    void cleanup() { m_pasteboard.reset(); }
    void eachCopyIsSeenInItsTurn();
    void ownWriteIsThereAtOnceAndSilent();
    void copyHeardOfAfterAWriteDoesNotReplaceIt();
    void tellsOfALostConnection();

private:
    std::unique_ptr<X11Pasteboard> m_pasteboard;
};

void X11PasteboardTest::init()
{
    m_pasteboard = X11Pasteboard::create(display());
    QVERIFY(m_pasteboard);
}

void X11PasteboardTest::eachCopyIsSeenInItsTurn()
{
    QByteArrayList seen;
    QSet<qint64> counts;
    connect(m_pasteboard.get(), &Pasteboard::changed, this, [&] {
        seen.append(m_pasteboard->string().value_or("nothing"));
        counts.insert(m_pasteboard->changeCount());
    });
    std::vector<std::function<void()>> held;
    m_pasteboard->setGate([&held](std::function<void()> open) { held.push_back(std::move(open)); });
    ForeignClient owner(display());
    QByteArrayList copied;
    for (int i = 0; i < 50; ++i) {
        copied.append("copy " + QByteArray::number(i));
        owner.copyText(copied.last());
        // The main thread hears of none of them before all are made. The engine does.
        m_pasteboard->engine()->settled().wait();
    }
    QCOMPARE(seen, QByteArrayList());
    m_pasteboard->settle(20s);
    QCOMPARE(seen, copied);
    QCOMPARE(counts.size(), copied.size());
    owner.copyText("one more");
    QTRY_COMPARE(static_cast<qsizetype>(held.size()), copied.size() + 1);
    QCOMPARE(seen, copied);
    held.front()(); // the first that is left has its turn
    QCOMPARE(seen, copied + QByteArrayList{"one more"});
}

void X11PasteboardTest::ownWriteIsThereAtOnceAndSilent()
{
    QSignalSpy changes(m_pasteboard.get(), &Pasteboard::changed);
    const qint64 before = m_pasteboard->changeCount();
    m_pasteboard->setString("ours");
    QCOMPARE(m_pasteboard->string(), QByteArray("ours"));
    QVERIFY(m_pasteboard->changeCount() != before);
    QVERIFY(m_pasteboard->types().contains(u"UTF8_STRING"_s));
    const qint64 after = m_pasteboard->changeCount();
    m_pasteboard->settle(20s);
    QCOMPARE(changes.size(), 0);
    QCOMPARE(m_pasteboard->changeCount(), after);
    QVERIFY(!m_pasteboard->setPNGFile(m_session->homePath(u"gone.png"_s)));
    QCOMPARE(m_pasteboard->changeCount(), after);
    QCOMPARE(pasted(), QByteArray("ours"));
}

void X11PasteboardTest::copyHeardOfAfterAWriteDoesNotReplaceIt()
{
    ForeignClient owner(display());
    owner.copyText("theirs");
    m_pasteboard->engine()->settled().wait(); // it has been read, and waits for the main thread

    QByteArray seen;
    connect(m_pasteboard.get(), &Pasteboard::changed, this, [&] { seen = m_pasteboard->string().value_or(""); });
    m_pasteboard->setString("ours");
    QTRY_COMPARE(seen, QByteArray("theirs"));
    QCOMPARE(m_pasteboard->string(), QByteArray("ours"));
    m_pasteboard->settle(20s);
    QCOMPARE(pasted(), QByteArray("ours"));
}

void X11PasteboardTest::tellsOfALostConnection()
{
    QStringList reasons;
    connect(m_pasteboard.get(), &Pasteboard::availabilityChanged, this,
            [&] { reasons.append(m_pasteboard->unavailableReason()); });
    m_pasteboard->setString("ours");
    m_pasteboard->settle(20s);
    xcb_kill_client(m_session->connection(), m_session->selectionOwner("CLIPBOARD"));
    xcb_flush(m_session->connection());
    QTRY_COMPARE(reasons.size(), 2);
    QVERIFY(!reasons[0].isEmpty() && reasons[1].isEmpty());
}

QTEST_GUILESS_MAIN(X11PasteboardTest)
#include "X11PasteboardTest.moc"
