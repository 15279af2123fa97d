#pragma once

#include "Pasteboard.h"

#include <QFile>

namespace Clipboard::Testing {

/// A pasteboard whose content the test chooses, and that notes every write and every reading of content.
class FakePasteboard final : public Pasteboard
{
public:
    struct Content
    {
        QSet<QString> types;
        QList<QUrl> fileURLs;
        std::optional<QByteArray> png;
        std::optional<QByteArray> tiff;
        std::optional<QByteArray> string;
    };

    /// What another program's copy does to the pasteboard.
    void copyFromOutside(const Content& next)
    {
        content = next;
        ++count;
        emit changed();
    }
    void copyTextFromOutside(const QByteArray& utf8)
    {
        Content next;
        next.types = {QStringLiteral("UTF8_STRING")};
        next.string = utf8;
        copyFromOutside(next);
    }

    [[nodiscard]] QString unavailableReason() const override { return reason; }
    [[nodiscard]] qint64 changeCount() const override { return count; }
    [[nodiscard]] QSet<QString> types() const override { return content.types; }
    [[nodiscard]] QList<QUrl> fileURLs() const override { return noteRead(content.fileURLs); }
    [[nodiscard]] std::optional<QByteArray> pngData() const override { return noteRead(content.png); }
    [[nodiscard]] std::optional<QByteArray> tiffData() const override { return noteRead(content.tiff); }
    [[nodiscard]] std::optional<QByteArray> string() const override { return noteRead(content.string); }
    [[nodiscard]] bool notifiesChanges() const override { return notifies; }

    void setString(const QByteArray& utf8) override { write({{}, {}, {}, {}, utf8}); }
    void setFile(const QUrl& file) override { write({{}, {file}, {}, {}, {}}); }
    void setPNG(const QByteArray& png) override { write({{}, {}, png, {}, {}}); }
    [[nodiscard]] bool setPNGFile(const QString& path) override
    {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly))
            return false;
        pngFiles.append(path);
        write({{}, {}, file.readAll(), {}, {}});
        return true;
    }

    Content content;
    qint64 count = 0;
    bool notifies = true;
    QString reason;
    QList<Content> writes;        // every content that was written, oldest first
    QStringList pngFiles;         // the paths given to setPNGFile() that could be opened
    mutable int contentReads = 0; // calls of fileURLs(), pngData(), tiffData() and string()

private:
    template <typename T>
    const T& noteRead(const T& value) const
    {
        ++contentReads;
        return value;
    }
    void write(const Content& next)
    {
        content = next;
        writes.append(next);
        ++count;
    }
};

} // namespace Clipboard::Testing
