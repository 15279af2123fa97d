#pragma once

#include "Annotation/EditorLifecycle.h"
#include "QtTextLayout.h"
#include "Support/ToastText.h"

#include <QImage>
#include <QObject>
#include <QPointer>
#include <QScreen>
#include <QThreadPool>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace Clipboard {

class EditorWindow;
class PasteService;
class WindowSystem;

/// The annotation editor: opens pictures in its one window and carries out what its lifecycle decides. Pictures are
/// converted, flattened and written off the main thread. Main thread only.
class EditorController final : public QObject
{
    Q_OBJECT
public:
    struct Services
    {
        WindowSystem& windows;
        PasteService& pasteService;
        std::function<void(const ClipboardCore::ToastText& text)> toast;
        /// The text on the pasteboard, at once; empty when there is none.
        std::function<QString()> copiedText;
    };
    /// New pictures are written into `imagesDir`.
    EditorController(QString imagesDir, Services services, QObject* parent = nullptr);
    ~EditorController() override;

    /// Opens `picture`, which is the content of `item`, on `screen` (null: any), with a colour and a size for the first
    /// marks. When a document is open, the new one waits until that is left. The window appears as soon as the picture
    /// is ready to be drawn.
    void open(const QImage& picture, QScreen* screen, const ClipboardCore::AnnotationColor& color,
              ClipboardCore::AnnotationSize size, const ClipboardCore::ClipItem& item);
    // What the user chose last, over restarts.
    [[nodiscard]] static ClipboardCore::AnnotationColor rememberedColor();
    [[nodiscard]] static ClipboardCore::AnnotationSize rememberedSize();

    /// The program is to end: answered by onQuit(), at once or when the user agrees to lose the changes, or not at all.
    void quit();
    /// For an end that asks nobody: adds to the history what the open document has become, unless that takes longer.
    void keepChanges(std::chrono::milliseconds limit);

    /// Whether the user is working in the editor's window.
    [[nodiscard]] bool isInFront() const;
    /// Gives the keyboard to the window, if it is open.
    void bringToFront();

    // Set by the composition root.
    /// Adds a written picture, made from that entry, to the history; answers the id of its entry.
    std::function<std::optional<QUuid>(const QString& path, const ClipboardCore::ClipItem& from)> addResult;
    /// Puts a picture on the pasteboard.
    std::function<void(const QByteArray& png)> writePNG;
    /// The editor is about to close: the panel is to be shown with that entry selected.
    std::function<void(std::optional<QUuid> selecting)> onClose;
    /// The program may end.
    std::function<void()> onQuit;

private:
    void handle(const ClipboardCore::EditorEvent& event);
    void showDocument();
    void makeWindow();
    void finish(ClipboardCore::EditorExit exit);
    void saveAs();
    void writeTo(const QString& path, const ClipboardCore::AnnotationSession& session);
    void closeWindow();
    void closeWindowBehindPanel();

    void carryOut(const ClipboardCore::EditorOutcomes::Flatten& outcome);
    void carryOut(const ClipboardCore::EditorOutcomes::Commit& outcome);
    void carryOut(const ClipboardCore::EditorOutcomes::Paste& outcome);
    void carryOut(const ClipboardCore::EditorOutcomes::Toast& outcome);
    void carryOut(const ClipboardCore::EditorOutcomes::Close& outcome);
    void carryOut(const ClipboardCore::EditorOutcomes::Dismiss& outcome);
    void carryOut(const ClipboardCore::EditorOutcomes::Quit& outcome);
    void commitToHistory(const ClipboardCore::EditorOutcomes::Commit& commit);

    QString m_imagesDir;
    Services m_services;
    ClipboardCore::EditorLifecycle m_lifecycle;
    std::shared_ptr<const QtTextLayout> m_textLayout; // made when it is first needed
    QPointer<QScreen> m_screen;
    QString m_saveFolder; // where a result was last written to
    std::unique_ptr<EditorWindow> m_window;
    std::unique_ptr<EditorWindow> m_leavingWindow; // until the panel has the keyboard
    QThreadPool m_pool;                            // one thread: pictures open in the order in which they were chosen
};

} // namespace Clipboard
