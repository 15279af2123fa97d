#include "Journey.h"

#include <QDir>
#include <QFile>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace Clipboard::Testing {

namespace {

// Where the rows of the list are, from the panel's top left corner.
constexpr int listTop = 96;
constexpr int rowHeight = 44;
constexpr int rowCentre = 120;

constexpr int stillFrames = 8; // looks without a change; what is animated changes within three

constexpr qsizetype shownCharacters = 60; // of an entry, in a message

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

Journey::Journey(QString program)
    : m_program(std::move(program))
{
}

Journey::~Journey() = default;

// ── Beginning and end

void Journey::begin(const Options& options, Where where)
{
    m_session = std::make_unique<VirtualSession>(options);
    if (!m_session->failure().isEmpty())
        return fail(m_session->failure(), where);
    // A key that a busy machine lets go late would be pressed again.
    if (options.kind == VirtualSession::Kind::x11)
        m_session->run(u"xset"_s, {u"r"_s, u"off"_s});
    prepare();
    m_tessaly = std::make_unique<RunningTessaly>(*m_session, m_program);
    startTessaly(where);
}

void Journey::startTessaly(Where where)
{
    hear();
    m_notices.clear(); // of a program that has ended
    m_isHeard = m_listener == nullptr;
    if (!hasFailed() && !m_tessaly->start())
        fail(u"the program does not watch the clipboard"_s, where);
    const auto isHeard = [this] {
        hear();
        return m_isHeard;
    };
    expect("the program to be listened to", isHeard, where);
}

void Journey::endTessaly(int signal, Where where)
{
    if (!m_tessaly || !m_tessaly->isRunning())
        return;
    const int exitCode = m_tessaly->stop(signal);
    if (!hasFailed() && signal != SIGKILL && exitCode != 0)
        fail(u"the program ended with %1"_s.arg(exitCode), where);
}

void Journey::end()
{
    endTessaly();
    m_tessaly.reset();
    m_listener = nullptr;
    m_session.reset();
}

void Journey::listen(Where where)
{
    m_listener = &m_session->start(QStringLiteral(TESSALY_LISTENER));
    expect(
        "the accessibility bus", [this] { return m_listener->canReadLine(); }, where);
    m_session->setEnvironment(u"QT_LINUX_ACCESSIBILITY_ALWAYS_ON"_s, u"1"_s);
}

void Journey::hear()
{
    constexpr QByteArrayView notice = "showing notification ";
    while (m_listener != nullptr && m_listener->canReadLine()) {
        const QByteArray words = m_listener->readLine().chopped(1);
        m_isHeard = m_isHeard || words == "joined";
        if (words.startsWith(notice))
            m_notices.append(QString::fromUtf8(words.sliced(notice.size())));
    }
}

// ── What other programs do

void Journey::copy(const QByteArray& content, const QString& target, Where where)
{
    copyUnrecorded(content, target);
    expectCapture(where);
}

void Journey::copyUnrecorded(const QByteArray& content, const QString& target)
{
    if (!hasFailed())
        desktop().copy(content, target);
}

void Journey::copyFile(const QString& path, Where where)
{
    copy("file://" + path.toUtf8(), asFiles, where);
}

void Journey::expectCapture(Where where)
{
    if (!hasFailed() && !m_tessaly->waitForCaptures(1))
        fail(u"no copy was recorded; "_s + situation(), where);
}

QByteArray Journey::pasted(const QString& target)
{
    return desktop().pasted(target);
}

void Journey::openTerminal(Where where)
{
    if (hasFailed())
        return;
    QStringList words = desktop().terminal(u"the terminal"_s, u"stty -icanon; cat > '%1'"_s.arg(typedFile()));
    const QString program = words.takeFirst();
    m_session->start(program, words);
    expectFront("the terminal", where);
    expect(
        "the terminal's shell", [this] { return QFile::exists(typedFile()); }, where);
}

QString Journey::openDocument(const QString& name, const QByteArray& content, Where where)
{
    QString path = writeFile(name, content, where);
    if (!hasFailed())
        m_session->start(u"mousepad"_s, {u"--disable-server"_s, path});
    expectFront(name, where);
    return path;
}

QString Journey::writeFile(const QString& name, const QByteArray& content, Where where)
{
    QString path = m_session->homePath(name);
    QDir().mkpath(path.section(u'/', 0, -2));
    QFile file(path);
    if (!hasFailed() && !(file.open(QFile::WriteOnly) && file.write(content) == content.size()))
        fail(u"%1 could not be written"_s.arg(path), where);
    return path;
}

// ── What the person does

void Journey::press(QAnyStringView keys)
{
    if (!hasFailed())
        desktop().press(keys.toString().split(u' '));
}

void Journey::type(QAnyStringView letters)
{
    if (!hasFailed())
        desktop().type(letters.toString());
}

void Journey::click(QPoint place, int times, int button)
{
    if (!hasFailed())
        desktop().click(place, times, button);
}

void Journey::clickTrayIcon(int button, Where where)
{
    // A tray that grows for it has it beyond the screen at first.
    const auto isAtRest = [this] {
        const QRect icon = m_tessaly->trayIcon().value_or(Window()).geometry;
        const QRect screen({}, desktop().size());
        return icon.width() > 16 && screen.contains(icon) && icon.right() > screen.right() - icon.width();
    };
    expect("the icon at rest in the tray, which is in the corner", isAtRest, where);
    click(m_tessaly->trayIcon().value_or(Window()).geometry.center(), 1, button);
}

void Journey::callUp(Where where)
{
    press("super+shift+v");
    expectPanel(where);
}

QPoint Journey::row(int number)
{
    const QPoint corner = m_tessaly->panel().value_or(Window()).geometry.topLeft();
    return corner + QPoint(rowCentre, listTop + number * rowHeight + rowHeight / 2);
}

void Journey::lift(QPoint from, QPoint nowhere, Where where)
{
    if (hasFailed())
        return;
    desktop().movePointer(from);
    desktop().pressButton();
    carry(nowhere, "not-allowed", where);
}

void Journey::dropOn(QPoint place, Where where)
{
    carry(place, "dnd-copy", where);
    letGo(where);
}

/// Until the pointer has that shape. It goes back and forth, for programs answer when it moves.
void Journey::carry(QPoint place, const QByteArray& shape, Where where)
{
    const auto isAnswered = [&, step = 0]() mutable {
        desktop().movePointer(place + QPoint(step++ % 2, 0));
        return desktop().pointerShape() == shape;
    };
    expect("the pointer " + shape, isAnswered, where);
}

void Journey::letGo(Where where)
{
    if (!hasFailed())
        desktop().releaseButton();
    // Until then the program takes the next press for a part of this drag.
    const auto isOver = [this] {
        const QByteArray shape = desktop().pointerShape();
        return shape != "not-allowed" && !shape.startsWith("dnd-");
    };
    expect("the end of the drag", isOver, where);
}

// ── What has to come

void Journey::expect(QAnyStringView what, const std::function<bool()>& condition, Where where)
{
    if (!hasFailed() && !VirtualSession::waitUntil(condition))
        fail(u"waited in vain for %1; "_s.arg(what.toString()) + situation(), where);
}

void Journey::expectPanel(Where where)
{
    const auto isUp = [this] {
        const auto panel = m_tessaly->panel();
        return panel && m_tessaly->activeWindow() == panel->id;
    };
    expect("the panel with the keyboard", isUp, where);
}

void Journey::expectNoPanel(Where where)
{
    expect(
        "the panel to go", [this] { return !m_tessaly->panel(); }, where);
}

void Journey::expectNotice(QAnyStringView text, Where where)
{
    const QString wanted = text.toString();
    const auto isHeard = [&] {
        hear();
        const qsizetype at = m_notices.indexOf(wanted);
        m_notices.remove(0, at + 1);
        return at >= 0;
    };
    expect(u"the notice “%1”"_s.arg(wanted), isHeard, where);
}

void Journey::expectFront(QAnyStringView title, Where where)
{
    const QString wanted = title.toString();
    const auto isInFront = [&] {
        const auto window = desktop().activeWindow();
        return window && window->title.contains(wanted);
    };
    expect(u"the window “%1” with the keyboard"_s.arg(wanted), isInFront, where);
}

void Journey::expectDocument(QAnyStringView title, Where where)
{
    const QString wanted = title.toString();
    const auto isOpen = [&] {
        const QList<Window> windows = desktop().windowsOf("mousepad");
        return std::ranges::any_of(windows, [&](const Window& window) { return window.title.contains(wanted); });
    };
    expect(u"the document “%1”"_s.arg(wanted), isOpen, where);
}

void Journey::expectNewest(QAnyStringView content, Where where)
{
    const QString wanted = content.toString();
    expect(
        u"“%1” as the newest entry"_s.arg(wanted.left(shownCharacters)), [&] { return newest().content == wanted; },
        where);
}

void Journey::expectHistory(const QStringList& wanted, Where where)
{
    expect(
        u"the entries [%1]"_s.arg(wanted.join(u", ")), [&] { return contents() == wanted; }, where);
}

void Journey::expectEntries(qsizetype count, Where where)
{
    expect(
        u"%1 entries"_s.arg(count), [&] { return contents().size() == count; }, where);
}

void Journey::expectClipboard(const QByteArray& content, const QString& target, Where where)
{
    expect(
        u"“%1” on the clipboard"_s.arg(QString::fromUtf8(content.left(shownCharacters))),
        [&] { return pasted(target) == content; }, where);
}

void Journey::expectFile(const QString& path, const QByteArray& content, Where where)
{
    expect(
        u"“%1” in %2"_s.arg(QString::fromUtf8(content.left(shownCharacters)), path),
        [&] { return contentOf(path) == content; }, where);
}

void Journey::expectStillness(Where where)
{
    QByteArray last;
    int unchanged = 0;
    const auto isStill = [&] {
        const QByteArray now = desktop().pixels();
        unchanged = now == last ? unchanged + 1 : 0;
        last = now;
        return unchanged == stillFrames;
    };
    expect("the screen to stand still", isStill, where);
}

Journey::Entry Journey::newest()
{
    return m_tessaly->history().value_or(QList<Entry>()).value(0);
}

QStringList Journey::contents()
{
    QStringList result;
    for (const Entry& entry : m_tessaly->history().value_or(QList<Entry>()))
        result.append(entry.content);
    return result;
}

QString Journey::situation()
{
    QStringList windows;
    for (const Window& window : m_tessaly->windows())
        windows.append(window.title);
    QStringList entries;
    for (const QString& content : contents())
        entries.append(content.left(shownCharacters));
    const QString life = m_tessaly->isRunning() ? u"runs"_s : u"has ended with %1"_s.arg(m_tessaly->exitCode());
    return u"there is, in front: “%1”; the program %2, its windows: [%3]; notices: [%4]; entries in the file: [%5]"_s
        .arg(desktop().activeWindow().value_or(Window()).title, life, windows.join(u", "), m_notices.join(u", "),
             entries.mid(0, 5).join(u", "));
}

} // namespace Clipboard::Testing
