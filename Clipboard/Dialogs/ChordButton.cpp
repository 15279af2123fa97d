#include "ChordButton.h"

#include "ChordText.h"
#include "KeyCap.h"
#include "Painting.h"

#include <QKeyEvent>

namespace Clipboard {

namespace {

constexpr int fieldWidth = 190;

} // namespace

ChordButton::ChordButton(QWidget* parent)
    : DrawnButton(Theme::buttonRadius, parent)
{
    setFocusPolicy(Qt::StrongFocus);
    connect(this, &QAbstractButton::clicked, this, [this] { setRecording(!m_isRecording); });
}

void ChordButton::setChord(const ClipboardCore::KeyChord& chord)
{
    m_chord = chord;
    updateName();
}

QSize ChordButton::controlSize() const
{
    return {fieldWidth, Theme::buttonHeight};
}

ChordButton::Look ChordButton::look() const
{
    if (m_isRecording)
        return {Theme::rowSel, Theme::rowSelLine, Theme::text, {}};
    return {controlFill(), Theme::controlLine, Theme::text, {}};
}

void ChordButton::paintContent(QPainter& painter, const QRectF& control, const Look& look)
{
    if (m_isRecording) {
        Painting::textLine(painter, control, Fonts::caption, look.label, tr("Press the new key"), Qt::AlignHCenter);
        return;
    }
    const QString keys = shownChord(m_chord);
    const QSizeF cap = KeyCap::size(keys);
    KeyCap::draw(painter, {control.center().x() - cap.width() / 2, control.center().y() - cap.height() / 2}, keys);
}

bool ChordButton::event(QEvent* event)
{
    // Every key is the chord's while it records, also those that are the window's.
    const bool isKey = event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride;
    if (m_isRecording && isKey) {
        event->accept();
        return event->type() == QEvent::ShortcutOverride || take(*static_cast<QKeyEvent*>(event));
    }
    if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Return) {
        click();
        return true;
    }
    if (event->type() == QEvent::FocusOut)
        setRecording(false);
    return DrawnButton::event(event);
}

bool ChordButton::take(const QKeyEvent& event)
{
    const auto chord = pressedChord(event);
    if (event.key() == Qt::Key_Escape || chord)
        setRecording(false);
    if (chord)
        emit chordPressed(*chord);
    return true;
}

void ChordButton::setRecording(bool isRecording)
{
    if (m_isRecording == isRecording)
        return;
    m_isRecording = isRecording;
    updateName();
}

void ChordButton::updateName()
{
    const QString keys = m_isRecording ? tr("Press the new key") : shownChord(m_chord);
    setText(keys);
    setAccessibleName(tr("Hot key: %1").arg(keys));
    update();
}

} // namespace Clipboard
