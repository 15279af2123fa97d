#include "WorkerProcess.h"

#include <QLoggingCategory>
#include <QProcessEnvironment>
#include <QStringDecoder>

#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace Clipboard {

namespace {

Q_LOGGING_CATEGORY(log, "tessaly.worker")

/// What the worker may know of the session: the user's languages, and where data is installed.
QProcessEnvironment workerEnvironment()
{
    static const std::array names{
        u"HOME"_s,
        u"LANG"_s,
        u"LANGUAGE"_s,
        u"LC_ALL"_s,
        u"LC_MESSAGES"_s,
        u"LC_CTYPE"_s,
        u"TESSDATA_PREFIX"_s,
        u"SSL_CERT_DIR"_s,
        u"SSL_CERT_FILE"_s,
        u"LD_LIBRARY_PATH"_s,
        u"ASAN_OPTIONS"_s,
        u"LSAN_OPTIONS"_s,
        u"UBSAN_OPTIONS"_s,
    };
    const QProcessEnvironment session = QProcessEnvironment::systemEnvironment();
    QProcessEnvironment environment;
    for (const QString& name : names) {
        if (session.contains(name))
            environment.insert(name, session.value(name));
    }
    return environment;
}

std::optional<QString> decoded(const QByteArray& utf8)
{
    QStringDecoder decode(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = decode(utf8);
    if (decode.hasError())
        return std::nullopt;
    return text;
}

} // namespace

WorkerProcess::WorkerProcess(QString program, WorkerTask task, QObject* parent)
    : QObject(parent)
    , m_program(std::move(program))
    , m_task(std::move(task))
{
    m_process.setProcessEnvironment(workerEnvironment());
    m_process.setStandardErrorFile(QProcess::nullDevice());
    connect(&m_process, &QProcess::readyReadStandardOutput, this, &WorkerProcess::takeOutput);
    connect(&m_process, &QProcess::finished, this, [this](int exitCode, QProcess::ExitStatus status) {
        finish(status == QProcess::NormalExit && exitCode == 0 ? decoded(m_output) : std::nullopt);
    });
    connect(&m_process, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error != QProcess::FailedToStart) // all others are followed by finished(), or harmless
            return;
        qCWarning(log).noquote() << m_program << "cannot be started:" << m_process.errorString();
        finish(std::nullopt);
    });
    m_limit.setSingleShot(true);
    connect(&m_limit, &QTimer::timeout, this, &WorkerProcess::giveUp);
    m_limit.start(m_task.limit);
}

WorkerProcess::~WorkerProcess()
{
    m_process.disconnect(this);
    m_process.kill();
    m_process.waitForFinished();
}

void WorkerProcess::start()
{
    m_isStarted = true;
    m_process.start(m_program, m_task.arguments);
    if (!m_task.input.isEmpty())
        m_process.write(m_task.input);
    m_process.closeWriteChannel();
}

void WorkerProcess::takeOutput()
{
    const QByteArray more = m_process.readAllStandardOutput();
    if (m_output.size() + more.size() > maxOutputBytes)
        giveUp();
    else
        m_output += more;
}

void WorkerProcess::giveUp()
{
    m_limit.stop();
    m_process.kill();
    later([this] {
        if (!m_isStarted)
            emit ended();
        answer(std::nullopt);
    });
}

void WorkerProcess::finish(const std::optional<QString>& output)
{
    m_limit.stop();
    later([this, output] {
        emit ended();
        answer(output);
    });
}

void WorkerProcess::answer(const std::optional<QString>& output)
{
    if (m_isAnswered)
        return;
    m_isAnswered = true;
    emit answered(output); // the last thing done: nobody may be left
}

void WorkerProcess::later(const std::function<void()>& report)
{
    QMetaObject::invokeMethod(this, report, Qt::QueuedConnection);
}

} // namespace Clipboard
