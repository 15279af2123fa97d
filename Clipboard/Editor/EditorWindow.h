#pragma once

#include "Annotation/EditorKey.h"
#include "QtTextLayout.h"

#include <QWidget>

#include <functional>
#include <memory>

class QScreen;

namespace ClipboardCore {
class AnnotationSession;
class EditorLifecycle;
} // namespace ClipboardCore

namespace Clipboard {

class CanvasView;
class DiscardQuestion;
class EditorToolbar;

/// The window of the annotation editor: shows the document that the lifecycle has open, hands it what the mouse and the
/// keyboard do, and asks its owner for what leads beyond the document.
class EditorWindow final : public QWidget
{
    Q_OBJECT
public:
    /// `copiedText` answers at once what is to be pasted into a label.
    EditorWindow(ClipboardCore::EditorLifecycle& lifecycle, const std::shared_ptr<const QtTextLayout>& textLayout,
                 const std::function<QString()>& copiedText);
    ~EditorWindow() override;

    /// As large as the open picture needs, in the middle of the screen's work area.
    void placeOn(const QScreen& screen);
    /// Brings all that is shown in line with the lifecycle. Call after every change that the window did not make.
    void sync();
    /// Its document is gone, and the window is about to go: until then it shows what it showed, and hears nothing.
    void leave();

signals:
    void finishRequested(ClipboardCore::EditorExit exit);
    void closeRequested();
    void keepEditingRequested();
    void discardRequested();
    void saveAsRequested();
    /// Chosen for the marks to come.
    void colorChosen(const ClipboardCore::AnnotationColor& color);
    void sizeChosen(ClipboardCore::AnnotationSize size);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void connectToolbar();
    void edit(const std::function<void(ClipboardCore::AnnotationSession&)>& change);
    bool handleKey(const QKeyEvent& event);
    void announceStyle(const ClipboardCore::EditorKey& key);
    bool follow(const ClipboardCore::EditorKeyOutcome& outcome);
    void syncQuestion();
    void syncHintBar();
    [[nodiscard]] QRect hintBar() const;

    ClipboardCore::EditorLifecycle& m_lifecycle;
    EditorToolbar* m_toolbar;
    CanvasView* m_canvas;
    DiscardQuestion* m_question = nullptr;
    QString m_hint;
    QString m_zoom;
    bool m_isLeaving = false;
};

} // namespace Clipboard
