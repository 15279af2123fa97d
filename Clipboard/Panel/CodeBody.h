#pragma once

#include "PreviewBody.h"

class QScrollArea;

namespace Clipboard {

class OverlayScrollBar;
class TextBlock;

/// Code in a well of its own that scrolls.
class CodeBody final : public PreviewBody
{
    Q_OBJECT
public:
    explicit CodeBody(QWidget* parent);

    void setItem(const ClipboardCore::ClipItem& item, int visibleHeight) override;
    [[nodiscard]] int contentHeight() const override;
    [[nodiscard]] QString selectedText() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void layOut();
    QScrollArea* m_scroll;
    QWidget* m_page;
    TextBlock* m_code;
    OverlayScrollBar* m_scrollBar;
};

} // namespace Clipboard
