#pragma once

#include "Focus/FocusKey.h"
#include "History/ClipItem.h"

#include <QHash>
#include <QList>
#include <QMap>
#include <QWidget>

#include <optional>

class QScrollArea;

namespace Clipboard {

class HistoryViewModel;
class MetaCaption;
class OverlayScrollBar;
class PreviewBody;
class PreviewButton;
class Thumbs;
class Workspace;

/// The right side of the panel: the selected entry in full, a line about it, and what can be done with it.
class PreviewPane final : public QWidget
{
    Q_OBJECT
public:
    PreviewPane(HistoryViewModel& viewModel, const Workspace& workspace, Thumbs& thumbs, QWidget* parent);

    /// Takes over the selected entry.
    void syncItem();
    /// Takes over which control has focus.
    void syncFocus();
    void addFrames(QHash<ClipboardCore::FocusKey, QRectF>& frames, const QWidget* ancestor) const;

    /// What the user has marked in the preview.
    [[nodiscard]] QString selectedText() const;

protected:
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void makeButtons();
    [[nodiscard]] PreviewBody* bodyFor(ClipboardCore::ClipType type);
    void layOutContent();
    void layOutButtons();

    HistoryViewModel& m_viewModel;
    const Workspace& m_workspace;
    Thumbs& m_thumbs;
    std::optional<QUuid> m_shown;
    QScrollArea* m_scroll;
    QWidget* m_content;
    OverlayScrollBar* m_scrollBar;
    QMap<ClipboardCore::ClipType, PreviewBody*> m_bodies;
    PreviewBody* m_body = nullptr;
    MetaCaption* m_caption;
    QList<PreviewButton*> m_buttons;
};

} // namespace Clipboard
