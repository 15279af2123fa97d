#include "TaskNeeds.h"

namespace Clipboard {

namespace {

/// The absolute paths in a variable of the environment; a relative one would let the folder decide in which we started.
QByteArrayList pathsIn(const char* variable)
{
    QByteArrayList paths = qgetenv(variable).split(':');
    paths.removeIf([](const QByteArray& path) { return !path.startsWith('/'); });
    return paths;
}

/// Plugins, locales and character sets are read when they are first used. Nothing of a user's stands here.
QByteArrayList libraries()
{
    return QByteArrayList{
               "/usr", "/lib", "/lib32", "/lib64", "/etc/ld.so.cache", "/etc/ld.so.preload", "/etc/locale.alias"} +
           pathsIn("LD_LIBRARY_PATH");
}

} // namespace

TaskNeeds needsOfRecognition(const QByteArray& picture)
{
    return {.readable = libraries() + pathsIn("TESSDATA_PREFIX") + QByteArrayList{picture}};
}

TaskNeeds needsOfTitle()
{
    const QByteArrayList resolver{"/etc/resolv.conf", "/etc/hosts",    "/etc/nsswitch.conf",
                                  "/etc/host.conf",   "/etc/gai.conf", "/etc/services"};
    const QByteArrayList certificates{"/etc/ssl", "/etc/pki", "/etc/ca-certificates"};
    return {.readable = libraries() + resolver + certificates, .network = true};
}

} // namespace Clipboard
