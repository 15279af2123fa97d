#pragma once

#include <QByteArray>

#include <initializer_list>
#include <random>

/// Makes documents up: the same ones for the same seed.
class RandomDocuments final
{
public:
    explicit RandomDocuments(unsigned seed)
        : m_random(seed)
    {
    }

    /// An object or an array with white space in all places, numbers of any length and every kind of escape.
    [[nodiscard]] QByteArray json();
    /// An element and what is in it, in the way xmllint writes it but for white space between elements; in elements
    /// with text of their own there is none.
    [[nodiscard]] QByteArray xml();
    /// `document` with a byte lost, doubled, or replaced by one of `signs`.
    [[nodiscard]] QByteArray damaged(QByteArray document, const QByteArray& signs);

private:
    /// 0 to `count` - 1.
    size_t number(size_t count) { return m_random() % count; }
    QByteArray pick(std::initializer_list<const char*> choices) { return choices.begin()[number(choices.size())]; }
    QByteArray space() { return pick({"", "", " ", "\n", "\t \r\n"}); }

    QByteArray jsonValue(int depth);
    QByteArray jsonObject(int depth);
    QByteArray jsonArray(int depth);
    QByteArray jsonString();
    QByteArray jsonNumber();
    QByteArray element(int depth, bool isSpaced);
    QByteArray elements(int depth, bool isSpaced);
    QByteArray mixedContent(int depth);

    std::minstd_rand m_random;
};
