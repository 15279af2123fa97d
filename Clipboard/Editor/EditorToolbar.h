#pragma once

#include "Annotation/AnnotationSession.h"
#include "Annotation/EditorKey.h"

#include <QList>
#include <QWidget>

namespace Clipboard {

class ExitButton;
class ToolbarButton;

/// Tools, colours, sizes, undo and redo at the left, the exits at the right.
class EditorToolbar final : public QWidget
{
    Q_OBJECT
public:
    static constexpr int height = 52; // its seam at the bottom included

    explicit EditorToolbar(QWidget* parent);

    void sync(const ClipboardCore::AnnotationSession& session, bool areExitsEnabled);
    /// The width from which on nothing overlaps, with exits that are icons only.
    [[nodiscard]] int leastWidth() const { return m_leastWidth; }

signals:
    void toolChosen(ClipboardCore::AnnotationTool tool);
    void colorChosen(const ClipboardCore::AnnotationColor& color);
    void sizeChosen(ClipboardCore::AnnotationSize size);
    void undoChosen();
    void redoChosen();
    void exitChosen(ClipboardCore::EditorExit exit);
    void saveAsChosen();

protected:
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    using Group = QList<ToolbarButton*>;

    void addTools();
    void addColors();
    void addSizes();
    void addHistory();
    void addExits();
    void leave(ClipboardCore::EditorExit exit);
    [[nodiscard]] int neededWidth() const;
    void setExitsIconOnly(bool areIconOnly);

    Group m_tools;
    Group m_colors;
    Group m_sizes;
    Group m_history; // undo, redo
    QList<ExitButton*> m_exits;
    int m_leastWidth = 0;
};

} // namespace Clipboard
