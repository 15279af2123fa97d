#include "AssistiveClient.h"

#include <QCoreApplication>

#include <cstdio>

using namespace Clipboard::Testing;

/// Prints what a screen reader of the session would say, a line each, after one that says that it listens. The
/// programs' keys are left alone.
int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    AssistiveClient client(qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS"), AssistiveClient::Manner::eavesdropper);
    const auto say = [](QByteArray words) {
        std::puts(words.replace('\n', ' ').constData());
        std::fflush(stdout);
    };
    QObject::connect(&client, &AssistiveClient::said, [&say](const QString& words) { say(words.toUtf8()); });
    QObject::connect(&client, &AssistiveClient::joined, [&say] { say("joined"); });
    say("listening");
    return QCoreApplication::exec();
}
