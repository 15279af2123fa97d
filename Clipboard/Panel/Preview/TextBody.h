#pragma once

#include "PreviewBody.h"

namespace Clipboard {

class TextBlock;

/// A text or a link as selectable text. A long one is cut, with a note that says so.
class TextBody final : public PreviewBody
{
    Q_OBJECT
public:
    TextBody(ClipboardCore::ClipType type, QWidget* parent);

    void setItem(const ClipboardCore::ClipItem& item, int visibleHeight) override;
    [[nodiscard]] int contentHeight() const override;
    [[nodiscard]] QString selectedText() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void layOut();
    ClipboardCore::ClipType m_type;
    TextBlock* m_text;
    TextBlock* m_note;
};

/// The most characters of a text that a preview shows. The preview of a longer one would be of use to nobody.
inline constexpr qsizetype previewCharacters = 20000;

} // namespace Clipboard
