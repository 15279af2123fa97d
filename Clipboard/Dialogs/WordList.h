#pragma once

#include <QStringList>
#include <QWidget>

#include <functional>

class QVBoxLayout;

namespace Clipboard {

/// A list of words, each with a button that removes it.
class WordList final : public QWidget
{
    Q_OBJECT
public:
    explicit WordList(QWidget* parent);

    /// `shown` are the same words as a person reads them.
    void setWords(const QStringList& words, const QStringList& shown);
    [[nodiscard]] const QStringList& words() const { return m_words; }

signals:
    /// Removed by the user.
    void wordRemoved(const QString& word);

private:
    [[nodiscard]] QWidget* lastControlBefore();

    QVBoxLayout* m_rows;
    QStringList m_words;
    QStringList m_shown;
};

} // namespace Clipboard
