#include "TextBlock.h"

#include "Accessibility.h"
#include "Theme.h"

#include <QClipboard>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollArea>

#include <algorithm>
#include <cmath>

namespace Clipboard {

namespace {

// Long paragraphs are cut, at the end of a line, into pieces that lay out in well under a millisecond each.
constexpr qsizetype pieceLength = 1500;
// Of each turn of the event loop; leaves most of a frame to keys and painting.
constexpr qint64 sliceNanoseconds = 2'000'000;
// For what is on screen first. Enough but for scripts that none of the fonts knows, which then fill the screen in two
// or three frames.
constexpr qint64 firstNanoseconds = 2'500'000;
// Tabs indent code, and in other texts they stand between the columns of a table.
constexpr int codeTabInDigits = 4;
constexpr int textTabInDigits = 8;
constexpr qreal outOfSight = 1e6; // logical pixels; below what a piece paints

bool isLineEnd(QChar character)
{
    return character == u'\n' || character == u'\r';
}

qsizetype paragraphEnd(const QString& text, qsizetype start, qsizetype limit)
{
    const auto begin = text.begin() + start;
    return std::find_if(begin, text.begin() + limit, isLineEnd) - text.begin();
}

/// Where the last of the characters begins that a reader sees; all of the text when that is one.
qsizetype lastCharacter(const QString& text)
{
    const auto length = static_cast<int>(text.size());
    const int last = QTextLayout(text).previousCursorPosition(length);
    return last > 0 ? last : length;
}

/// The start of the paragraph after the line end at `end`: a carriage return and its line feed are one.
qsizetype afterLineEnd(const QString& text, qsizetype end)
{
    const bool pair = text.at(end) == u'\r' && end + 1 < text.size() && text.at(end + 1) == u'\n';
    return end + (pair ? 2 : 1);
}

} // namespace

TextBlock::TextBlock(const Fonts::Style& style, Lines lines, QWidget* parent)
    : QWidget(parent)
    , m_style(style)
    , m_lines(lines)
{
    setAttribute(Qt::WA_StaticContents); // what is in sight is not painted anew with each slice
    setCursor(Qt::IBeamCursor);
    Accessibility::setRole(this, QAccessible::StaticText);
    m_slices.setInterval(0);
    connect(&m_slices, &QTimer::timeout, this, &TextBlock::layOutSlice);
}

TextBlock::~TextBlock() = default;

void TextBlock::setText(const QString& text, const QList<Span>& spans, int visibleHeight)
{
    m_text = text;
    m_spans = spans;
    m_pieces.clear();
    m_next = 0;
    m_lineCount = 0;
    m_contentWidth = 0;
    m_anchor = m_end = 0;
    setAccessibleName(text.left(pieceLength));
    layOutFor(firstNanoseconds, visibleHeight);
    if (isLaidOut())
        m_slices.stop();
    else
        m_slices.start();
    update();
}

void TextBlock::layOutFor(qint64 nanoseconds, int wantedHeight)
{
    QElapsedTimer elapsed;
    elapsed.start();
    while (!isLaidOut() && contentHeight() < wantedHeight && elapsed.nsecsElapsed() < nanoseconds)
        layOutNextPiece();
}

void TextBlock::layOutSlice()
{
    layOutFor(sliceNanoseconds, QWIDGETSIZE_MAX);
    if (isLaidOut())
        m_slices.stop();
    emit contentSizeChanged();
}

std::unique_ptr<QTextLayout> TextBlock::makeLayout(qsizetype start, qsizetype length) const
{
    const QString text = m_text.mid(start, length);
    auto layout = std::make_unique<QTextLayout>(text, Fonts::font(m_style, text));
    QTextOption option;
    const bool wraps = m_lines == Lines::wrapped;
    option.setWrapMode(wraps ? QTextOption::WrapAtWordBoundaryOrAnywhere : QTextOption::NoWrap);
    option.setTabStopDistance((wraps ? textTabInDigits : codeTabInDigits) * Fonts::width(m_style, QString(u'0')));
    if (wraps && layout->text().isRightToLeft())
        option.setAlignment(Qt::AlignRight);
    layout->setTextOption(option);
    layout->setFormats(formatsFor(start, length));
    layout->setCacheEnabled(true);
    const qreal baseline = Fonts::baseline(m_style);
    int count = 0;
    layout->beginLayout();
    for (QTextLine line = layout->createLine(); line.isValid(); line = layout->createLine()) {
        line.setLineWidth(width());
        // Lines of every script stand on the same grid, whatever the height of a fallback font.
        line.setPosition({0, count * m_style.lineHeight + baseline - line.ascent()});
        ++count;
    }
    layout->endLayout();
    return layout;
}

void TextBlock::layOutNextPiece()
{
    const qsizetype limit = std::min(m_text.size(), m_next + pieceLength);
    const qsizetype end = paragraphEnd(m_text, m_next, limit);
    if (end < limit || limit == m_text.size()) {
        addUpTo(end);
        m_next = end < m_text.size() ? afterLineEnd(m_text, end) : end;
        return;
    }
    // The last line, or at least the last character, may go on beyond the cut: it begins the next piece.
    if (m_lines == Lines::unbroken)
        return addUpTo(m_next + lastCharacter(m_text.mid(m_next, pieceLength)));
    auto layout = makeLayout(m_next, pieceLength);
    const int own = layout->lineCount() - 1;
    if (own < 1)
        return addUpTo(m_next + lastCharacter(layout->text()));
    QTextLine next = layout->lineAt(own);
    next.setPosition({0, outOfSight});
    addPiece(m_next + next.textStart(), own, std::move(layout));
}

void TextBlock::addUpTo(qsizetype end)
{
    auto layout = makeLayout(m_next, end - m_next);
    const int lines = layout->lineCount();
    addPiece(end, lines, std::move(layout));
}

void TextBlock::addPiece(qsizetype end, int lines, std::unique_ptr<QTextLayout> layout)
{
    for (int i = 0; i < lines; ++i)
        m_contentWidth = std::max(m_contentWidth, static_cast<int>(std::ceil(layout->lineAt(i).naturalTextWidth())));
    m_pieces.push_back({m_next, end - m_next, m_lineCount, lines, std::move(layout)});
    m_next = end;
    m_lineCount += std::max(lines, 1);
}

QList<QTextLayout::FormatRange> TextBlock::formatsFor(qsizetype start, qsizetype length) const
{
    QList<QTextLayout::FormatRange> formats;
    for (const Span& span : m_spans) {
        const qsizetype from = std::max(span.start, start);
        const qsizetype to = std::min(span.start + span.length, start + length);
        if (from >= to)
            continue;
        QTextCharFormat format;
        format.setForeground(span.color);
        format.setFontWeight(span.weight);
        formats.append({static_cast<int>(from - start), static_cast<int>(to - from), format});
    }
    return formats;
}

void TextBlock::paintEvent(QPaintEvent* event)
{
    QPainter painter(this);
    painter.setPen(Theme::text);
    const auto [from, to] = std::minmax(m_anchor, m_end);
    for (const Piece& piece : m_pieces) {
        const int top = piece.firstLine * m_style.lineHeight;
        const int bottom = top + piece.lines * m_style.lineHeight;
        if (bottom < event->rect().top())
            continue;
        if (top > event->rect().bottom())
            break;
        QList<QTextLayout::FormatRange> selection;
        const qsizetype first = std::clamp<qsizetype>(from - piece.start, 0, piece.length);
        const qsizetype last = std::clamp<qsizetype>(to - piece.start, 0, piece.length);
        if (first < last) {
            QTextCharFormat format;
            format.setBackground(Theme::rowSelLine);
            selection.append({static_cast<int>(first), static_cast<int>(last - first), format});
        }
        piece.layout->draw(&painter, {0, static_cast<qreal>(top)}, selection, QRectF(event->rect()));
    }
}

qsizetype TextBlock::positionAt(const QPointF& point) const
{
    if (m_pieces.empty())
        return 0;
    const int line = std::clamp(static_cast<int>(point.y()) / m_style.lineHeight, 0, std::max(0, m_lineCount - 1));
    const auto after = std::upper_bound(m_pieces.begin(), m_pieces.end(), line,
                                        [](int number, const Piece& piece) { return number < piece.firstLine; });
    const Piece& piece = *std::prev(after);
    const int lineInPiece = std::clamp(line - piece.firstLine, 0, std::max(0, piece.lines - 1));
    const QTextLine textLine = piece.layout->lineAt(lineInPiece);
    return textLine.isValid() ? piece.start + textLine.xToCursor(point.x()) : piece.start;
}

QString TextBlock::selectedText() const
{
    const auto [from, to] = std::minmax(m_anchor, m_end);
    return m_text.mid(from, to - from);
}

void TextBlock::clearSelection()
{
    select(0, 0);
}

void TextBlock::select(qsizetype anchor, qsizetype end)
{
    m_anchor = anchor;
    m_end = end;
    update();
}

void TextBlock::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return;
    const qsizetype position = positionAt(event->position());
    select(event->modifiers().testFlag(Qt::ShiftModifier) ? m_anchor : position, position);
    emit pressed();
}

void TextBlock::mouseMoveEvent(QMouseEvent* event)
{
    if (!event->buttons().testFlag(Qt::LeftButton))
        return;
    select(m_anchor, positionAt(event->position()));
    // Whoever marks beyond the edge of what is in sight wants to see what comes there.
    for (QWidget* around = parentWidget(); around != nullptr; around = around->parentWidget()) {
        if (auto* area = qobject_cast<QScrollArea*>(around)) {
            const QPoint place = mapTo(area->widget(), event->position().toPoint());
            area->ensureVisible(place.x(), place.y(), 0, 0);
        }
    }
}

void TextBlock::mouseReleaseEvent(QMouseEvent* event)
{
    // The selection of the mouse is its own clipboard where there is one: the middle button pastes it.
    QClipboard* clipboard = QGuiApplication::clipboard();
    if (event->button() == Qt::LeftButton && m_anchor != m_end && clipboard->supportsSelection())
        clipboard->setText(selectedText(), QClipboard::Selection);
}

void TextBlock::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return;
    const qsizetype position = positionAt(event->position());
    const auto isWord = [this](qsizetype i) { return m_text.at(i).isLetterOrNumber() || m_text.at(i) == u'_'; };
    qsizetype from = std::min(position, m_text.size());
    qsizetype to = from;
    while (from > 0 && isWord(from - 1))
        --from;
    while (to < m_text.size() && isWord(to))
        ++to;
    select(from, to);
}

} // namespace Clipboard
