#pragma once

#include "Focus/FocusKey.h"

#include <QHash>
#include <QList>
#include <QRectF>
#include <QWidget>

namespace Clipboard {

class HistoryViewModel;
class PreviewButton;

/// The row of buttons below the preview, for the selected entry.
class PreviewButtonBar final : public QWidget
{
    Q_OBJECT
public:
    PreviewButtonBar(HistoryViewModel& viewModel, QWidget* parent);

    /// Takes over the selected entry, which must exist.
    void syncItem();
    /// Takes over which button has focus.
    void syncFocus();
    void addFrames(QHash<ClipboardCore::FocusKey, QRectF>& frames, const QWidget* ancestor) const;

protected:
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    HistoryViewModel& m_viewModel;
    QList<PreviewButton*> m_buttons;
};

} // namespace Clipboard
