#pragma once

#include "DrawnButton.h"
#include "Support/KeyChord.h"

namespace Clipboard {

/// Shows a hot key and, once pressed, takes the next one that is pressed on the keyboard. Escape and a loss of the
/// keyboard leave it as it was.
class ChordButton final : public DrawnButton
{
    Q_OBJECT
public:
    explicit ChordButton(QWidget* parent);

    void setChord(const ClipboardCore::KeyChord& chord);
    [[nodiscard]] QSize controlSize() const override;

signals:
    void chordPressed(const ClipboardCore::KeyChord& chord);

protected:
    [[nodiscard]] Look look() const override;
    void paintContent(QPainter& painter, const QRectF& control, const Look& look) override;
    bool event(QEvent* event) override;

private:
    void setRecording(bool isRecording);
    bool take(const QKeyEvent& event);
    void updateName();

    ClipboardCore::KeyChord m_chord;
    bool m_isRecording = false;
};

} // namespace Clipboard
