#pragma once

#include <QScrollArea>

namespace Clipboard {

class OverlayScrollBar;

/// A scrolling page without frame and ground, whose scroll bars lie over it while there is more than fits.
class OverlayScrollArea final : public QScrollArea
{
    Q_OBJECT
public:
    /// Where the page and the bars are, in pixels from the area's edges.
    struct Insets
    {
        int page = 0;
        int barAcross = 2; // from a bar to the edge beside it
        int barAlong = 0;  // from a bar's ends to the edges there
    };

    /// Takes `page` over. It keeps the size that it is given.
    OverlayScrollArea(QWidget* page, const Insets& insets, QWidget* parent);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    Insets m_insets;
    OverlayScrollBar* m_vertical;
    OverlayScrollBar* m_horizontal;
};

} // namespace Clipboard
