#pragma once

#include "History/ClipItem.h"

#include <QWidget>

class QScrollBar;

namespace Clipboard {

/// The upper part of the preview: the entry itself, in the form of its type. One body serves all entries of a type.
class PreviewBody : public QWidget
{
    Q_OBJECT
public:
    using QWidget::QWidget;

    /// Shows an entry of the body's type. Of what is to be seen first, `visibleHeight` of it is in sight.
    virtual void setItem(const ClipboardCore::ClipItem& item, int visibleHeight) = 0;
    /// The height it needs at its width; contentHeightChanged() follows when that is not yet the last word.
    [[nodiscard]] virtual int contentHeight() const = 0;
    /// What the user has marked in it.
    [[nodiscard]] virtual QString selectedText() const { return {}; }

    /// What scrolls up and down within it; null when nothing does.
    [[nodiscard]] virtual QScrollBar* scrollBar() const { return nullptr; }

signals:
    void contentHeightChanged();
};

} // namespace Clipboard
