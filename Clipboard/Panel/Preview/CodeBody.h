#pragma once

#include "PreviewBody.h"

namespace Clipboard {

class OverlayScrollBar;
class OverlayScrollArea;
class TextBlock;

/// Code in a well of its own that scrolls: its lines are not broken.
class CodeBody final : public PreviewBody
{
    Q_OBJECT
public:
    explicit CodeBody(QWidget* parent);

    void setItem(const ClipboardCore::ClipItem& item, int visibleHeight) override;
    [[nodiscard]] int contentHeight() const override;
    [[nodiscard]] QString selectedText() const override;
    [[nodiscard]] QScrollBar* scrollBar() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void layOut();
    QWidget* m_page;
    OverlayScrollArea* m_scroll;
    TextBlock* m_code;
};

} // namespace Clipboard
