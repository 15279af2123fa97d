#include "TextBody.h"

#include "Support/Graphemes.h"
#include "Support/UrlHost.h"
#include "TextBlock.h"
#include "Theme.h"

#include <QLocale>

using ClipboardCore::ClipItem;
using ClipboardCore::ClipType;

namespace Clipboard {

namespace {

constexpr int noteGap = 8;

/// A link's host stands out from what surrounds it.
QList<TextBlock::Span> linkSpans(const QString& link)
{
    const QString host = ClipboardCore::urlHost(link.toUtf8()).value_or(QString());
    const qsizetype at = host.isEmpty() ? -1 : link.indexOf(host);
    if (at < 0)
        return {};
    const qsizetype end = at + host.size();
    return {{0, at, Theme::text2, QFont::Normal},
            {at, host.size(), Theme::text, QFont::DemiBold},
            {end, link.size() - end, Theme::text2, QFont::Normal}};
}

} // namespace

TextBody::TextBody(ClipType type, QWidget* parent)
    : PreviewBody(parent)
    , m_type(type)
    , m_text(new TextBlock(type == ClipType::link ? Fonts::link : Fonts::body, TextBlock::Lines::wrapped, this))
    , m_note(new TextBlock(Fonts::caption, TextBlock::Lines::wrapped, this))
{
    setAttribute(Qt::WA_StaticContents);
    m_note->setAttribute(Qt::WA_TransparentForMouseEvents); // it is no part of the text
    connect(m_text, &TextBlock::contentSizeChanged, this, [this] {
        layOut();
        emit contentHeightChanged();
    });
}

void TextBody::setItem(const ClipItem& item, int visibleHeight)
{
    const auto shown = ClipboardCore::Graphemes::prefix(item.content, previewCharacters);
    m_text->resize(width(), 0);
    m_note->resize(width(), 0);
    m_text->setText(shown.text, m_type == ClipType::link ? linkSpans(shown.text) : QList<TextBlock::Span>(),
                    visibleHeight);
    QString note;
    if (!shown.isWhole)
        note = tr("Preview shows the first %1 characters — Paste inserts the full text.")
                   .arg(QLocale().toString(previewCharacters));
    m_note->setText(note, {{0, note.size(), Theme::text3, QFont::Normal}}, visibleHeight);
    m_note->setVisible(!note.isEmpty());
    layOut();
}

int TextBody::contentHeight() const
{
    const int note = m_note->contentHeight();
    return m_text->contentHeight() + (note > 0 ? noteGap + note : 0);
}

QString TextBody::selectedText() const
{
    return m_text->selectedText();
}

void TextBody::layOut()
{
    m_text->setGeometry(0, 0, width(), m_text->contentHeight());
    m_note->setGeometry(0, m_text->contentHeight() + noteGap, width(), m_note->contentHeight());
}

void TextBody::resizeEvent(QResizeEvent* event)
{
    layOut();
    PreviewBody::resizeEvent(event);
}

} // namespace Clipboard
