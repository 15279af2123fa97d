#pragma once

#include "Focus/FocusKey.h"
#include "History/ClipItem.h"
#include "PreviewBodies.h"

#include <QHash>
#include <QMap>
#include <QWidget>

#include <optional>

namespace Clipboard {

class HistoryViewModel;
enum class PreviewScroll;
class MetaCaption;
class OverlayScrollArea;
class PreviewButtonBar;
class QRInline;
class SmartActionsSection;

/// The right side of the panel: the selected entry in full, a line about it, and what can be done with it.
///
/// The actions of a large entry appear when they are found.
class PreviewPane final : public QWidget
{
    Q_OBJECT
public:
    PreviewPane(HistoryViewModel& viewModel, const PreviewBodies& bodies, QWidget* parent);

    /// Takes over the selected entry and its QR code.
    void syncItem();
    /// Takes over which control has focus, and scrolls to it.
    void syncFocus();
    /// Takes over what can be done with the entry, and what of it is under way.
    void syncActions();
    void scroll(PreviewScroll by);
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
    void followContent();
    void reveal(const QWidget* part);
    [[nodiscard]] int scrollToReveal(const QWidget* part) const;

    HistoryViewModel& m_viewModel;
    PreviewBodies m_bodies;
    std::optional<QUuid> m_shown;
    std::optional<ClipboardCore::FocusKey> m_focus;
    QWidget* m_content;
    OverlayScrollArea* m_scroll;
    QMap<ClipboardCore::ClipType, PreviewBody*> m_madeBodies;
    PreviewBody* m_body = nullptr;
    MetaCaption* m_caption;
    SmartActionsSection* m_actions;
    QRInline* m_qr;
    PreviewButtonBar* m_buttons;
    const QWidget* m_revealed = nullptr; // what was last brought into sight of the entry
};

} // namespace Clipboard
