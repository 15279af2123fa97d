#include "SelectionForms.h"

#include "History/CopiedFile.h"
#include "Sealing/StoredFile.h"
#include "SelectionLimits.h"
#include "SelectionText.h"
#include "UriList.h"

#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace Clipboard {

std::shared_ptr<FileHandle> FileHandle::open(const QString& path)
{
    const int descriptor = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (descriptor < 0)
        return nullptr;
    std::shared_ptr<FileHandle> handle(new FileHandle(descriptor, path));
    struct stat status = {};
    // A folder opens too, and a pipe would keep the reader waiting.
    if (::fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode))
        return nullptr;
    return handle;
}

FileHandle::~FileHandle()
{
    ::close(m_descriptor);
}

std::optional<QByteArray> FileHandle::readAll() const
{
    struct stat status = {};
    if (::fstat(m_descriptor, &status) != 0 || status.st_size > maxSelectionBytes)
        return {};
    QByteArray bytes(static_cast<qsizetype>(status.st_size), Qt::Uninitialized);
    qsizetype done = 0;
    while (done < bytes.size()) {
        const ssize_t got = ::pread(m_descriptor, bytes.data() + done, static_cast<size_t>(bytes.size() - done), done);
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            return {};
        done += got;
    }
    return ClipboardCore::StoredFile::contentOf(bytes, m_path);
}

SelectionForm verbatimForm(const QByteArray& target, const QByteArray& type, int format, const QByteArray& bytes)
{
    return {target, type, format, [bytes] { return bytes; }};
}

SelectionForms formsOfText(const QByteArray& utf8)
{
    return {
        verbatimForm("UTF8_STRING", "UTF8_STRING", 8, utf8),
        verbatimForm("text/plain;charset=utf-8", "text/plain;charset=utf-8", 8, utf8),
        verbatimForm("text/plain", "text/plain", 8, utf8),
        // Whoever asks for Latin-1 gets what Latin-1 can say of the text: better than nothing to paste.
        {"STRING", "STRING", 8, [utf8] { return SelectionText::latin1(utf8); }},
        // The type of the reply to TEXT is the owner's choice.
        verbatimForm("TEXT", "UTF8_STRING", 8, utf8),
    };
}

SelectionForms formsOfFile(const QUrl& file)
{
    SelectionForms forms{
        verbatimForm("text/uri-list", "text/uri-list", 8, UriList::uriList({file})),
        verbatimForm("x-special/gnome-copied-files", "x-special/gnome-copied-files", 8, UriList::copiedFiles({file})),
    };
    for (auto& form : formsOfText(ClipboardCore::CopiedFile::content(file).utf8()))
        forms.push_back(std::move(form));
    return forms;
}

SelectionForms formsOfPNG(const QByteArray& png)
{
    return {verbatimForm("image/png", "image/png", 8, png)};
}

SelectionForms formsOfPNGFile(const std::shared_ptr<FileHandle>& file)
{
    return {{"image/png", "image/png", 8, [file] { return file->readAll(); }}};
}

} // namespace Clipboard
