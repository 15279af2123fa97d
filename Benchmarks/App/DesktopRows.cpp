#include "Bench.h"
#include "ForeignOwner.h"
#include "Keyboard.h"
#include "ProcessFigures.h"

#include <QFile>
#include <QThread>

using namespace Qt::StringLiterals;
using Clipboard::Testing::VirtualSession;

namespace Clipboard::Benchmarks {

namespace {

constexpr unsigned long settle = 100; // ms
constexpr auto pollInterval = std::chrono::microseconds(100);
const QString terminalTitle = u"the terminal"_s;
constexpr quint32 returnKey = 0xff0d; // as X11/keysymdef.h numbers it

/// The same on desktops of different kinds.
class OnDesktop final
{
public:
    OnDesktop(QString name, VirtualSession::Kind kind);

    void capture(int times);
    void show(int times);
    void memory();
    void paste(int times);

private:
    /// The time just before it goes down.
    Clock::time_point pressHotKey();
    Clock::time_point pressReturn();
    [[nodiscard]] QString named(const QString& what) const { return what + u", on "_s + m_name; }
    void openTerminal(const QString& file);

    QString m_name;
    Bench m_bench;
    std::unique_ptr<Keyboard> m_keyboard; // of X11, which knows when it is pressed; elsewhere it is the driver's
};

OnDesktop::OnDesktop(QString name, VirtualSession::Kind kind)
    : m_name(std::move(name))
    , m_bench({.entries = 500, .bytes = 20'000}, 1, kind)
{
    if (kind == VirtualSession::Kind::x11)
        m_keyboard = std::make_unique<Keyboard>(m_bench.session.display());
}

Clock::time_point OnDesktop::pressHotKey()
{
    if (m_keyboard)
        return Bench::pressHotKey(*m_keyboard);
    const Clock::time_point begin = Clock::now();
    m_bench.session.desktop().press({u"super+shift+v"_s});
    return begin;
}

Clock::time_point OnDesktop::pressReturn()
{
    if (m_keyboard)
        return m_keyboard->press({returnKey});
    const Clock::time_point begin = Clock::now();
    m_bench.session.desktop().press({u"Return"_s});
    return begin;
}

void OnDesktop::capture(int times)
{
    const std::unique_ptr<Testing::ForeignOwner> owner = m_bench.session.desktop().otherProgram();
    std::vector<double> values;
    for (int i = 0; i < times; ++i) {
        m_bench.tessaly.moments().clear();
        const Clock::time_point begin = Clock::now();
        owner->copyText("copy number " + QByteArray::number(i));
        values.push_back(m_bench.until("captured", begin));
    }
    row(named(u"capture: copy to its entry"_s), values, {});
}

void OnDesktop::show(int times)
{
    std::vector<double> values;
    for (int i = 0; i <= times; ++i) {
        QThread::msleep(settle);
        m_bench.tessaly.moments().clear();
        const Clock::time_point begin = pressHotKey();
        const double time = m_bench.until("panel-painted", begin);
        if (i > 0) // the first time of all takes longer
            values.push_back(time);
        QThread::msleep(settle);
        pressHotKey();
        if (!m_bench.tessaly.waitForPanel(false))
            giveUp(u"The panel did not go away."_s);
    }
    row(named(u"show: hot key to first painted frame, 500 of 20 KB"_s), values, {});
}

void OnDesktop::memory()
{
    const double measured = ProcessFigures::proportionalMemory(m_bench.tessaly.processID());
    row(named(u"memory: after showing, 500 of 20 KB"_s), measured, u"MB PSS"_s, u"≤ 40"_s);
}

void OnDesktop::openTerminal(const QString& file)
{
    const auto& desktop = m_bench.session.desktop();
    QStringList words = desktop.terminal(terminalTitle, u"stty raw; exec cat > '%1'"_s.arg(file));
    const QString program = words.takeFirst();
    m_bench.session.start(program, words);
    const bool isOpen = VirtualSession::waitUntil([&] {
        const std::optional<Testing::Desktop::Window> front = desktop.activeWindow();
        return front && front->title.contains(terminalTitle) && QFile::exists(file);
    });
    if (!isOpen)
        giveUp(u"The terminal did not open."_s);
}

void OnDesktop::paste(int times)
{
    const QString typed = m_bench.session.homePath(u"typed"_s);
    openTerminal(typed);
    std::vector<double> values;
    for (int i = 0; i < times; ++i) {
        const qint64 before = QFile(typed).size();
        m_bench.tessaly.moments().clear();
        (void)m_bench.until("panel-painted", pressHotKey());
        QThread::msleep(settle);
        const Clock::time_point begin = pressReturn();
        while (QFile(typed).size() == before &&
               Clock::now() - begin < std::chrono::milliseconds(VirtualSession::defaultTimeout))
            std::this_thread::sleep_for(pollInterval);
        values.push_back(std::chrono::duration<double, std::milli>(Clock::now() - begin).count());
        QThread::msleep(settle);
    }
    row(named(u"paste: Return to the text in a terminal"_s), values, {});
}

} // namespace

void desktopRows(Effort effort)
{
    for (const auto& [name, kind] :
         {std::pair(u"X11"_s, VirtualSession::Kind::x11), std::pair(u"sway"_s, VirtualSession::Kind::sway)}) {
        OnDesktop desktop(name, kind);
        desktop.capture(effort.times(200, 5));
        desktop.show(effort.times(20, 2));
        desktop.memory();
        desktop.paste(effort.times(10, 1));
    }
}

} // namespace Clipboard::Benchmarks
