#pragma once

#include "Fonts.h"

#include <QColor>
#include <QList>
#include <QTextLayout>
#include <QTimer>
#include <QWidget>

#include <memory>
#include <vector>

namespace Clipboard {

/// Selectable text of any script. It is laid out a piece at a time: what is on screen at once, the rest in the
/// pauses of the event loop, so that no text holds up a frame. Its size grows meanwhile.
class TextBlock final : public QWidget
{
    Q_OBJECT
public:
    /// A stretch of the text in another colour or weight.
    struct Span
    {
        qsizetype start;
        qsizetype length;
        QColor color;
        QFont::Weight weight;
    };

    enum class Lines {
        wrapped,  // to the widget's width
        unbroken, // but where the text itself breaks them, and after a thousand characters and more
    };

    TextBlock(const Fonts::Style& style, Lines lines, QWidget* parent);
    ~TextBlock() override;

    /// Replaces the text and lays out `visibleHeight` of it at the widget's width, as far as a frame's time allows.
    void setText(const QString& text, const QList<Span>& spans, int visibleHeight);
    /// The height of what is laid out so far, in logical pixels.
    [[nodiscard]] int contentHeight() const { return m_lineCount * m_style.lineHeight; }
    /// The width of the longest line so far.
    [[nodiscard]] int contentWidth() const { return m_contentWidth; }
    [[nodiscard]] bool isLaidOut() const { return m_next >= m_text.size(); }

    [[nodiscard]] QString selectedText() const;
    void clearSelection();

signals:
    /// More of the text is laid out.
    void contentSizeChanged();
    /// The mouse begins a selection.
    void pressed();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;

private:
    struct Piece // a stretch of one paragraph
    {
        qsizetype start;
        qsizetype length;
        int firstLine;
        int lines;
        std::unique_ptr<QTextLayout> layout; // of one more line where the next piece begins with that
    };
    void layOutNextPiece();
    void addUpTo(qsizetype end);
    void addPiece(qsizetype end, int lines, std::unique_ptr<QTextLayout> layout);
    void layOutSlice();
    void layOutFor(qint64 nanoseconds, int wantedHeight);
    [[nodiscard]] std::unique_ptr<QTextLayout> makeLayout(qsizetype start, qsizetype length) const;
    [[nodiscard]] QList<QTextLayout::FormatRange> formatsFor(qsizetype start, qsizetype length) const;
    [[nodiscard]] qsizetype positionAt(const QPointF& point) const;
    void select(qsizetype anchor, qsizetype end);

    Fonts::Style m_style;
    Lines m_lines;
    QString m_text;
    QList<Span> m_spans;
    std::vector<Piece> m_pieces;
    qsizetype m_next = 0; // the first character that is not laid out
    int m_lineCount = 0;
    int m_contentWidth = 0;
    qsizetype m_anchor = 0;
    qsizetype m_end = 0;
    QTimer m_slices;
};

} // namespace Clipboard
