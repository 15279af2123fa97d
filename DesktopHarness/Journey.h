#pragma once

#include "RunningTessaly.h"
#include "VirtualSession.h"

#include <QAnyStringView>

#include <csignal>
#include <functional>
#include <memory>

namespace Clipboard::Testing {

/// What a person does with the program and sees of it, step by step, in a session of its own. Each step waits for what
/// it needs, and no longer. One that waits in vain says for what; the steps after it do nothing.
class Journey
{
public:
    /// Where a step stands, as std::source_location tells it, which not every compiler that reads this has.
    class Where
    {
    public:
        [[nodiscard]] static constexpr Where current(const char* file = __builtin_FILE(), int line = __builtin_LINE())
        {
            return {file, line};
        }
        [[nodiscard]] constexpr const char* file_name() const { return m_file; }
        [[nodiscard]] constexpr int line() const { return m_line; }

    private:
        constexpr Where(const char* file, int line)
            : m_file(file)
            , m_line(line)
        {
        }
        const char* m_file;
        int m_line;
    };
    using Entry = RunningTessaly::Entry;
    using Window = Desktop::Window;
    using Options = VirtualSession::Options;

    // What a copy is of, as other programs name it.
    static inline const QString asText = QStringLiteral("UTF8_STRING");
    static inline const QString asFiles = QStringLiteral("text/uri-list");
    static inline const QString asPicture = QStringLiteral("image/png");

    explicit Journey(QString program);
    virtual ~Journey();
    Q_DISABLE_COPY_MOVE(Journey)

    // ── Beginning and end
    void begin(const Options& options = {}, Where where = Where::current());
    void startTessaly(Where where = Where::current());
    /// Ends the program by a signal, which other than SIGKILL it answers with an orderly end.
    void endTessaly(int signal = SIGTERM, Where where = Where::current());
    void end();
    /// Has a program of the session listen to what is read out, for expectNotice(). Before the program starts.
    void listen(Where where = Where::current());
    [[nodiscard]] VirtualSession& session() { return *m_session; }
    [[nodiscard]] Desktop& desktop() { return m_session->desktop(); }
    [[nodiscard]] RunningTessaly& tessaly() { return *m_tessaly; }

    // ── What other programs do
    /// Copies, and waits until the program has recorded it.
    void copy(const QByteArray& content, const QString& target = asText, Where where = Where::current());
    /// Copies what the program is not to record.
    void copyUnrecorded(const QByteArray& content, const QString& target = asText);
    void copyFile(const QString& path, Where where = Where::current());
    /// Waits for one more recorded copy.
    void expectCapture(Where where = Where::current());
    [[nodiscard]] QByteArray pasted(const QString& target = asText);
    /// A terminal that the panel does not hide. Each letter typed into it goes into typedFile().
    void openTerminal(Where where = Where::current());
    [[nodiscard]] QString typedFile() const { return m_session->homePath(QStringLiteral("typed")); }
    /// An editor with a file of that name and content; the file's path.
    QString openDocument(const QString& name, const QByteArray& content = {}, Where where = Where::current());
    /// A file of that name in the home folder; its path.
    QString writeFile(const QString& name, const QByteArray& content, Where where = Where::current());

    // ── What the person does
    /// Keys and chords such as "ctrl+k Down Return", one after the other.
    void press(QAnyStringView keys);
    void type(QAnyStringView letters);
    void click(QPoint place, int times = 1, int button = 1);
    void clickTrayIcon(int button, Where where = Where::current());
    /// Calls the panel up by the hot key.
    void callUp(Where where = Where::current());
    /// The centre of a row of the panel's list, on the screen.
    [[nodiscard]] QPoint row(int number);
    /// Takes hold of what is there and carries it to a place where nothing wants it, until the pointer says so.
    void lift(QPoint from, QPoint nowhere, Where where = Where::current());
    /// Carries it on, until the pointer says that what is there would take it, and lets it go.
    void dropOn(QPoint place, Where where = Where::current());
    void letGo(Where where = Where::current());

    // ── What has to come
    void expect(QAnyStringView what, const std::function<bool()>& condition, Where where = Where::current());
    void expectPanel(Where where = Where::current());
    void expectNoPanel(Where where = Where::current());
    /// A notice of that text is read out which was not expected before. It is for those who listen().
    void expectNotice(QAnyStringView text, Where where = Where::current());
    /// The window with the keyboard has that in its title.
    void expectFront(QAnyStringView title, Where where = Where::current());
    /// A window of the editor has that in its title.
    void expectDocument(QAnyStringView title, Where where = Where::current());
    void expectNewest(QAnyStringView content, Where where = Where::current());
    /// The contents of all entries in the file, the newest first.
    void expectHistory(const QStringList& contents, Where where = Where::current());
    void expectEntries(qsizetype count, Where where = Where::current());
    void expectClipboard(const QByteArray& content, const QString& target = asText, Where where = Where::current());
    void expectFile(const QString& path, const QByteArray& content, Where where = Where::current());

    /// Nothing on the screen moves any more.
    void expectStillness(Where where = Where::current());

    /// The newest entry in the file; an empty one when there is none.
    [[nodiscard]] Entry newest();
    [[nodiscard]] QStringList contents();

protected:
    /// After the session has come up and before the program starts.
    virtual void prepare() {}
    virtual void fail(const QString& message, const Where& where) = 0;
    [[nodiscard]] virtual bool hasFailed() const = 0;

private:
    void carry(QPoint place, const QByteArray& shape, Where where);
    /// What there is instead of what was waited for.
    [[nodiscard]] QString situation();

    QString m_program;
    /// Takes in what has been read out.
    void hear();

    QStringList m_notices;          // heard, and not expected yet
    bool m_isHeard = true;          // by the listener, if there is one
    QProcess* m_listener = nullptr; // owned by the session
    std::unique_ptr<VirtualSession> m_session;
    std::unique_ptr<RunningTessaly> m_tessaly;
};

} // namespace Clipboard::Testing
