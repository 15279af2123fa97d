#include "Commands.h"
#include "Terminal.h"

#include <QFile>
#include <QFileInfo>

#include <cstdio>
#include <cstring>

#include <dlfcn.h>

using namespace Qt::StringLiterals;

namespace {

constexpr const char* helpBeforeCommands =
    "Usage: tessaly [option]\n"
    "       tessaly COMMAND [option…] [operand…]\n"
    "Keeps the history of the clipboard. Super+Shift+V opens it; so does starting the program again.\n"
    "\n"
    "  -h, --help     print this help\n"
    "  -v, --version  print the version\n"
    "\n"
    "Commands to the running program; ENTRY is a place in the list from 1, an id, or - for a line of standard input.\n"
    "'tessaly COMMAND --help' prints the options of one.\n"
    "\n";

constexpr const char* helpAfterCommands = "\n"
                                          "Environment:\n"
                                          "  CLIPBOARD_SHOW_PANEL  when set, the panel opens right after the start\n";

bool isEither(const char* argument, const char* shortForm, const char* longForm)
{
    return std::strcmp(argument, shortForm) == 0 || std::strcmp(argument, longForm) == 0;
}

void printHelp()
{
    std::fputs(helpBeforeCommands, stdout);
    std::fputs(Clipboard::Command::help().toUtf8().constData(), stdout);
    std::fputs(helpAfterCommands, stdout);
}

/// In a development tree it is beside this program, else where the installation puts such libraries.
QString trayLibrary()
{
    const QString folder = QFileInfo(QFile::symLinkTarget(u"/proc/self/exe"_s)).path();
    const QString beside = folder + u"/tessaly-tray.so"_s;
    return QFile::exists(beside) ? beside : folder + QStringLiteral("/" TESSALY_TRAY_FROM_BIN "/tessaly-tray.so");
}

int runTray(int argc, char** argv)
{
    constexpr int cannotRun = 1;
    void* library = ::dlopen(QFile::encodeName(trayLibrary()).constData(), RTLD_NOW);
    void* entry = library ? ::dlsym(library, "runTrayProgram") : nullptr; // declared in TrayProgram.h
    if (!entry) {
        Clipboard::Command::Terminal::complain(QString::fromLocal8Bit(::dlerror()));
        return cannotRun;
    }
    return reinterpret_cast<int (*)(int, char**)>(entry)(argc, argv);
}

} // namespace

int main(int argc, char** argv)
{
    if (argc == 2 && isEither(argv[1], "-v", "--version")) {
        std::puts("Tessaly " TESSALY_VERSION);
        return 0;
    }
    if (argc == 2 && isEither(argv[1], "-h", "--help")) {
        printHelp();
        return 0;
    }
    return Clipboard::Command::isMeant(argc, argv) ? Clipboard::Command::run(argc, argv) : runTray(argc, argv);
}
