#include "WordList.h"

#include "FormButton.h"
#include "FormLabel.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

namespace Clipboard {

WordList::WordList(QWidget* parent)
    : QWidget(parent)
    , m_rows(new QVBoxLayout(this))
{
    m_rows->setContentsMargins(0, 0, 0, 0);
    m_rows->setSpacing(0);
}

void WordList::setWords(const QStringList& words, const QStringList& shown)
{
    if (words == m_words && shown == m_shown)
        return;
    m_words = words;
    m_shown = shown;
    while (QLayoutItem* row = m_rows->takeAt(0)) {
        row->widget()->hide();
        row->widget()->deleteLater(); // one of them may have brought us here
        delete row;
    }
    QWidget* before = lastControlBefore();
    for (qsizetype i = 0; i < words.size(); ++i) {
        auto* row = new QWidget(this);
        auto* line = new QHBoxLayout(row);
        line->setContentsMargins(0, 0, 0, 0);
        line->addWidget(new FormLabel(shown.value(i, words.at(i)), FormLabel::Style::word, row), 1);
        auto* remove = new FormButton(tr("Remove %1").arg(shown.value(i, words.at(i))), FormButton::Shape::button, row);
        remove->setSign(QLatin1String("clear"));
        connect(remove, &QAbstractButton::clicked, this, [this, word = words.at(i)] { emit wordRemoved(word); });
        line->addWidget(remove);
        m_rows->addWidget(row);
        // It was made last, and would have the focus last.
        setTabOrder(before, remove);
        before = remove;
    }
}

QWidget* WordList::lastControlBefore()
{
    QWidget* before = previousInFocusChain();
    while (before != this && (before->focusPolicy() & Qt::TabFocus) == 0)
        before = before->previousInFocusChain();
    return before;
}

} // namespace Clipboard
