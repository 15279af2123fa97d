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
    [[nodiscard]] QByteArray json() { return space() + jsonContainer(0) + space(); }
    /// An element and what is in it, in the way xmllint writes it but for white space between elements; in elements
    /// with text of their own there is none.
    [[nodiscard]] QByteArray xml() { return element(0, true); }
    /// `document` with a byte lost, doubled, or replaced by one of `signs`.
    [[nodiscard]] QByteArray damaged(QByteArray document, const QByteArray& signs)
    {
        const auto at = static_cast<qsizetype>(number(static_cast<size_t>(document.size())));
        switch (number(3)) {
        case 0:
            return document.remove(at, 1);
        case 1:
            return document.insert(at, document[at]);
        default:
            document[at] = signs[static_cast<qsizetype>(number(static_cast<size_t>(signs.size())))];
            return document;
        }
    }

private:
    static constexpr int deepestNesting = 6;

    /// 0 to `count` - 1.
    size_t number(size_t count) { return m_random() % count; }
    QByteArray pick(std::initializer_list<const char*> choices) { return choices.begin()[number(choices.size())]; }
    QByteArray space() { return pick({"", "", " ", "\n", "\t \r\n"}); }

    QByteArray jsonValue(int depth)
    {
        const size_t kind = number(depth < deepestNesting ? 7 : 4);
        if (kind > 3)
            return jsonContainer(depth + 1);
        return kind == 0 ? pick({"true", "false", "null"}) : kind == 1 ? jsonString() : jsonNumber();
    }

    /// An object, or an array.
    QByteArray jsonContainer(int depth)
    {
        const QByteArray open = pick({"{", "["});
        QByteArray result = open + space();
        for (size_t elements = number(6), at = 0; at < elements; ++at) {
            const QByteArray key = open == "{" ? jsonString() + space() + ":" + space() : QByteArray();
            result += (at > 0 ? "," : "") + space() + key + jsonValue(depth) + space();
        }
        return result + (open == "{" ? "}" : "]");
    }

    QByteArray jsonString()
    {
        QByteArray result = "\"";
        for (size_t pieces = number(5); pieces > 0; --pieces)
            result += pick({"a",          "b",         "key",
                            " ",          "é",         "中",
                            "\U0001F600", "\uFFFF",    "\u2028",
                            "\x7F",       "/",         R"(\/)",
                            R"(\\)",      R"(\")",     R"(\b\f\n\r\t)",
                            R"(\u0000)",  R"(\u001F)", R"(\u0041)",
                            R"(\u00e9)",  R"(\uFFFF)", R"(\ud83d\uDE00)",
                            R"(\uD83D)",  R"(\ude00)", R"(\ud800\ud83d\uDE00)"});
        return result + "\"";
    }

    QByteArray jsonNumber()
    {
        QByteArray result = pick({"", "-"}) + pick({"0", "7", "10", "12345678901234567890", "9007199254740993"});
        if (number(2) == 0)
            result += "." + pick({"0", "10", "000000000000000000000000001", "3333333333333333333333333"});
        if (number(3) == 0)
            result += pick({"e", "E"}) + pick({"", "+", "-"}) + pick({"0", "02", "21", "300"});
        return result;
    }

    QByteArray element(int depth, bool isSpaced)
    {
        const QByteArray name = pick({"a", "b", "c-1", "ns:d", "é", "_e.f"});
        QByteArray tag = "<" + name;
        for (const char* attribute : {"x", "y", "z"})
            if (number(4) == 0)
                tag += " " + QByteArray(attribute) + "=\"" + pick({"", "1", "é &amp; 中", "&lt;'&gt;", "a  b"}) + "\"";
        const size_t kind = number(depth < deepestNesting ? 4 : 2);
        if (kind == 0)
            return tag + "/>";
        if (kind == 1)
            return tag + ">" + mixedContent(depth) + "</" + name + ">";
        return tag + ">" + elements(depth + 1, isSpaced) + "</" + name + ">";
    }

    QByteArray elements(int depth, bool isSpaced)
    {
        QByteArray result = isSpaced ? space() : QByteArray();
        for (size_t count = 1 + number(5); count > 0; --count) {
            const size_t kind = number(8);
            const QByteArray node = kind == 0   ? "<!--" + pick({"", " a < b & c ", "\n- é"}) + "-->"
                                    : kind == 1 ? "<?p" + pick({"", " a > b", " ?"}) + "?>"
                                                : element(depth, isSpaced);
            result += node + (isSpaced ? space() : QByteArray());
        }
        return result;
    }

    QByteArray mixedContent(int depth)
    {
        QByteArray result = pick({"text", "é &lt; 中", " a ", "]]&gt;"});
        for (size_t count = number(3); count > 0; --count)
            result += element(depth + 1, false) + pick({"", " ", "\n", "b"});
        return result;
    }

    std::minstd_rand m_random;
};
