#pragma once

// Every recording fake of the ports.

#include "HotKeyGrabber.h"
#include "KeystrokeSender.h"
#include "LinkMetadataProvider.h"
#include "Pasteboard.h"
#include "TextRecognizer.h"
#include "WindowSystem.h"
#include "WorkerCheck.h"
#include "Workspace.h"

#include <QFile>
#include <QHash>
#include <QList>
#include <QStringList>

#include <utility>
#include <vector>

namespace Clipboard::Testing {

/// A hot key that the test presses. With a `refusal` another program has it already.
class FakeHotKeyGrabber final : public HotKeyGrabber
{
public:
    void grab() override
    {
        ++grabs;
        if (!refusal.isEmpty())
            emit failed(refusal);
    }
    void press() { emit pressed(); }

    int grabs = 0;
    QString refusal;
};

/// Notes what was asked of the keyboard. A paste stays under way until the test finishes it, unless `finishesAtOnce`.
class FakeKeystrokeSender final : public KeystrokeSender
{
public:
    [[nodiscard]] bool isTrusted() const override { return trusted; }
    void requestTrust() override { ++trustRequests; }
    [[nodiscard]] QString unavailableReason() const override { return {}; }
    void sendPaste(std::function<void(PasteResult)> done) override
    {
        ++pastes;
        if (finishesAtOnce)
            done(PasteResult::sent);
        else
            underWay.push_back(std::move(done));
    }
    /// Lets every paste under way end.
    void finishPastes(PasteResult result = PasteResult::sent)
    {
        const auto finished = std::exchange(underWay, {});
        for (const auto& done : finished)
            done(result);
    }

    bool trusted = true;
    bool finishesAtOnce = true;
    int trustRequests = 0;
    int pastes = 0;
    std::vector<std::function<void(PasteResult)>> underWay;
};

/// A worker that is as it should be.
class FakeWorkerCheck final : public WorkerCheck
{
public:
    void check(std::function<void(const QString& problem)> done) override { done({}); }
};

/// A web whose pages have the titles that the test says, when the test says.
class FakeLinkMetadataProvider final : public LinkMetadataProvider
{
public:
    void fetchTitle(const QUrl& link, std::chrono::milliseconds /*limit*/,
                    std::function<void(const std::optional<QString>& title)> done) override
    {
        links.append(link);
        underWay.append(std::move(done));
    }
    /// Ends the request that has waited longest.
    void finish(const std::optional<QString>& title) { underWay.takeFirst()(title); }

    QList<QUrl> links;
    QList<std::function<void(const std::optional<QString>& title)>> underWay;
};

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
        copyFromOutside({{QStringLiteral("UTF8_STRING")}, {}, {}, {}, utf8});
    }

    /// Its program clears it.
    void takeBack()
    {
        isEmptied = true;
        copyFromOutside({});
        isEmptied = false;
    }

    [[nodiscard]] QString unavailableReason() const override { return reason; }
    [[nodiscard]] bool isTakenBack() const override { return isEmptied; }
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
    bool isEmptied = false;
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

/// A recognizer that finds what the test says, when the test says.
class FakeTextRecognizer final : public TextRecognizer
{
public:
    void recognize(const Picture& picture, std::function<void(const QStringList& lines)> done) override
    {
        paths.append(picture.path);
        underWay.append(std::move(done));
    }
    /// Ends the recognition that has waited longest.
    void finish(const QStringList& lines) { underWay.takeFirst()(lines); }

    QStringList paths;
    QList<std::function<void(const QStringList& lines)>> underWay;
};

/// A window manager that notes the calls in their order, by the names of the functions.
class FakeWindowSystem final : public WindowSystem
{
public:
    void prepare(QWindow* /*window*/, Role /*role*/) override { calls.append(QStringLiteral("prepare")); }
    void setShadow(QWindow* /*window*/, const QMargins& /*shadow*/) override {}
    void rememberFrontWindow() override { calls.append(QStringLiteral("rememberFrontWindow")); }
    void activate(QWindow* window) override
    {
        calls.append(QStringLiteral("activate"));
        window->requestActivate();
    }
    void restoreFrontWindow() override { calls.append(QStringLiteral("restoreFrontWindow")); }
    [[nodiscard]] QScreen* workScreen() const override { return nullptr; }
    [[nodiscard]] bool isCompositing() const override { return compositing; }
    void setCompositing(bool on)
    {
        compositing = on;
        emit compositingChanged();
    }

    QStringList calls;
    bool compositing = true;
};

/// A workspace with the application in front and the icons that the test chooses.
class FakeWorkspace final : public Workspace
{
public:
    [[nodiscard]] std::optional<Application> frontmostApplication() const override { return frontmost; }
    [[nodiscard]] QIcon applicationIcon(const QString& bundleID) const override
    {
        applicationIconsAsked.append(bundleID);
        return applicationIcons.value(bundleID);
    }
    [[nodiscard]] QIcon fileIcon(const QString& path) const override
    {
        fileIconsAsked.append(path);
        return {};
    }

    [[nodiscard]] std::optional<QString> desktopFolder() const override { return desktop; }
    [[nodiscard]] QString picturesFolder() const override { return pictures; }
    void openURL(const QString& link) override { opened.append(link); }
    void revealFile(const QString& path) override { revealed.append(path); }

    std::optional<Application> frontmost;
    std::optional<QString> desktop;
    QString pictures;
    QStringList opened;
    QStringList revealed;
    QHash<QString, QIcon> applicationIcons;
    mutable QStringList applicationIconsAsked;
    mutable QStringList fileIconsAsked;
};

} // namespace Clipboard::Testing
