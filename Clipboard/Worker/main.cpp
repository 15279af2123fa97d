#include "Confinement.h"
#include "LinkTitle.h"
#include "TextRecognition.h"

#include <QCoreApplication>
#include <QFile>
#include <QLocale>
#include <QUrl>

#include <chrono>
#include <cstdio>
#include <optional>
#include <syslog.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr int noResult = 1;
constexpr int wrongUsage = 2;

constexpr const char* usage = "Usage: tessaly-worker recognize <picture>|-\n"
                              "       tessaly-worker title\n"
                              "       tessaly-worker check\n"
                              "\n"
                              "  recognize  prints the lines of text in the picture, for - that of the standard input\n"
                              "  title      reads a link from the standard input and prints the title of its page\n"
                              "  check      prints what keeps it from being confined here, a line each\n"
                              "\n"
                              "Tessaly starts it. It ends with 1 when there is no result.\n";

/// Answers whether all of it could be written.
bool print(const QString& text)
{
    const QByteArray utf8 = text.toUtf8();
    return std::fwrite(utf8.constData(), 1, size_t(utf8.size()), stdout) == size_t(utf8.size()) &&
           std::fflush(stdout) == 0;
}

/// Whoever started the worker does not listen to its standard error: the system's log has it.
void report(const char* problem)
{
    ::openlog("tessaly-worker", LOG_PERROR, LOG_USER);
    ::syslog(LOG_WARNING, "%s", problem);
    ::closelog();
}

/// By what the more demanding task needs.
int check()
{
    QString lines;
    Clipboard::confineThisProcess(Clipboard::needsOfTitle(),
                                  [&lines](const char* problem) { lines += QString::fromUtf8(problem) + u'\n'; });
    return print(lines) ? 0 : noResult;
}

int recognize(const QString& picturePath)
{
    QFile picture(picturePath);
    if (picturePath == "-"_L1 ? !picture.open(stdin, QIODevice::ReadOnly) : !picture.open(QIODevice::ReadOnly))
        return noResult;
    const std::optional<QStringList> lines = Clipboard::recognizeText(picture, QLocale::system().uiLanguages());
    if (!lines)
        return noResult;
    QString text;
    for (const QString& line : *lines)
        text += line + u'\n';
    return print(text) ? 0 : noResult;
}

// The longest that anyone waits for a title; who asks for less ends this process.
constexpr auto titleLimit = 3s;

// Longer ones are refused by servers, too.
constexpr qint64 maxLinkBytes = qint64{64} * 1024;

int title()
{
    QFile input;
    if (!input.open(stdin, QIODevice::ReadOnly))
        return noResult;
    const QByteArray link = input.read(maxLinkBytes + 1).trimmed();
    if (link.isEmpty() || link.size() > maxLinkBytes)
        return noResult;
    const std::optional<QString> found = Clipboard::linkTitle(QUrl::fromEncoded(link), titleLimit);
    return found && print(*found + u'\n') ? 0 : noResult;
}

} // namespace

int main(int argc, char** argv)
{
    const QByteArrayList arguments(argv + 1, argv + argc);
    if (arguments.size() == 2 && arguments.front() == "recognize") {
        Clipboard::confineThisProcess(Clipboard::needsOfRecognition(arguments.back()), report);
        const QCoreApplication application(argc, argv);
        return recognize(QFile::decodeName(arguments.back()));
    }
    if (arguments.size() == 1 && arguments.front() == "title") {
        Clipboard::confineThisProcess(Clipboard::needsOfTitle(), report);
        const QCoreApplication application(argc, argv);
        return title();
    }
    if (arguments.size() == 1 && arguments.front() == "check")
        return check();
    std::fputs(usage, stderr);
    return wrongUsage;
}
