#pragma once

#include "Support/ToastText.h"
#include "Surface.h"

#include <QWidget>

#include <functional>

namespace Clipboard {

/// The window of one notice: a check mark, or a warning sign where something failed, and a line of text on a card.
/// Clicks pass through it.
class ToastView final : public QWidget
{
    Q_OBJECT
public:
    /// Of a text beyond any screen's width only the beginning is taken. `composited`: see
    /// WindowSystem::isCompositing().
    ToastView(const ClipboardCore::ToastText& text, bool composited);

    [[nodiscard]] const QString& text() const { return m_text.text; }

    /// Puts the card above the bottom of `workArea`, centred, the text elided to its width. Placement ignores the
    /// margin that holds the shadow.
    void placeIn(const QRect& workArea);
    /// The card in global coordinates.
    [[nodiscard]] QRect cardGeometry() const;

    /// The margin that holds the shadow.
    [[nodiscard]] QMargins shadow() const { return m_surface.margins(); }

    void fadeIn();
    /// Fades and then calls `done`, at once when motion is reduced.
    void fadeOut(const std::function<void()>& done);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void fade(qreal from, qreal to, int milliseconds, const std::function<void()>& done);

    ClipboardCore::ToastText m_text;
    Surface m_surface;
};

} // namespace Clipboard
