#pragma once

#include "Focus/FocusKey.h"
#include "History/ClipItem.h"
#include "PreviewBody.h"

#include <QHash>
#include <QMap>
#include <QWidget>

#include <optional>

namespace Clipboard {

class HistoryViewModel;
class MetaCaption;
class OverlayScrollArea;
class PreviewButtonBar;
class QRInline;
class SmartActionsSection;

/// The right side of the panel: the selected entry in full, a line about it, and what can be done with it.
///
/// Finding out what can be done with a large entry takes longer than a frame may: its actions appear with the frame
/// after the one that shows it.
class PreviewPane final : public QWidget
{
    Q_OBJECT
public:
    PreviewPane(HistoryViewModel& viewModel, const PreviewBody::Sources& sources, QWidget* parent);

    /// Takes over the selected entry and its QR code.
    void syncItem();
    /// Takes over which control has focus, and scrolls to it.
    void syncFocus();
    /// Finds out now what can be done with the entry, for a key that is about to need it.
    void completeActions();
    /// Where the focusable elements are; those that are out of sight, where they come into sight.
    void addFrames(QHash<ClipboardCore::FocusKey, QRectF>& frames, const QWidget* ancestor) const;

    /// What the user has marked in the preview.
    [[nodiscard]] QString selectedText() const;

signals:
    /// Its elements have moved without the view model having changed.
    void framesChanged();

protected:
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    [[nodiscard]] PreviewBody* bodyFor(ClipboardCore::ClipType type);
    void show(const ClipboardCore::ClipItem& item);
    void syncQR();
    void layOutContent();
    [[nodiscard]] int scrollToReveal(const QWidget* part) const;

    HistoryViewModel& m_viewModel;
    PreviewBody::Sources m_sources;
    std::optional<QUuid> m_shown;
    std::optional<ClipboardCore::FocusKey> m_focus;
    bool m_actionsPending = false;
    QWidget* m_content;
    OverlayScrollArea* m_scroll;
    QMap<ClipboardCore::ClipType, PreviewBody*> m_bodies;
    PreviewBody* m_body = nullptr;
    MetaCaption* m_caption;
    SmartActionsSection* m_actions;
    QRInline* m_qr;
    PreviewButtonBar* m_buttons;
};

} // namespace Clipboard
