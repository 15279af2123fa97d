#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace Clipboard {

/// One form in which the content of a selection is offered to other programs.
struct SelectionForm
{
    QByteArray target;
    QByteArray type; // the type of the reply; mostly the target itself
    int format = 8;  // bits of a unit: 8, 16 or 32, the last in host longwords of 4 bytes
    /// Makes the bytes when somebody asks for them, or nothing when that fails; called on the engine's thread.
    std::function<std::optional<QByteArray>()> bytes;
};

using SelectionForms = std::vector<SelectionForm>;

/// A file descriptor that closes itself.
class FileHandle final
{
public:
    /// Opens the file for reading; null when that fails.
    [[nodiscard]] static std::shared_ptr<FileHandle> open(const QString& path);
    ~FileHandle();
    FileHandle(const FileHandle&) = delete;
    FileHandle& operator=(const FileHandle&) = delete;

    /// What the whole file holds, sealed or not; nothing when it cannot be read or is larger than a selection may be.
    [[nodiscard]] std::optional<QByteArray> readAll() const;

private:
    FileHandle(int descriptor, QString path)
        : m_descriptor(descriptor)
        , m_path(std::move(path))
    {
    }

    int m_descriptor;
    QString m_path;
};

[[nodiscard]] SelectionForms formsOfText(const QByteArray& utf8);
/// The file as a list of one for file managers, and its path as text.
[[nodiscard]] SelectionForms formsOfFile(const QUrl& file);
[[nodiscard]] SelectionForms formsOfPNG(const QByteArray& png);
/// Reads the file each time that it is asked for, so that a picture waiting to be pasted takes no memory.
[[nodiscard]] SelectionForms formsOfPNGFile(const std::shared_ptr<FileHandle>& file);
/// Bytes as they were read from somewhere else.
[[nodiscard]] SelectionForm verbatimForm(const QByteArray& target, const QByteArray& type, int format,
                                         const QByteArray& bytes);

} // namespace Clipboard
