#include "ContentReading.h"
#include "Fuzzer.h"
#include "SelectionText.h"
#include "UriList.h"

#include <QUtf8StringView>

#include <algorithm>

using namespace Clipboard;
using namespace Qt::StringLiterals;

namespace {

constexpr char recordEnd = '\x1e';
constexpr auto mark = "secret"_L1;

/// A record is the type of a reply behind a sign for its format or for none, and the bytes on the lines after it.
void answer(ContentReading& reading, const QByteArray& record)
{
    const qsizetype lineEnd = record.indexOf('\n');
    const char manner = record.isEmpty() ? '-' : record.front();
    if (manner == '-')
        reading.giveUp();
    else if (manner == '=')
        reading.giveUpKind();
    else if (manner == '.')
        reading.finish();
    else
        std::ignore = reading.take({record.left(lineEnd).mid(1), manner == '3' ? 32 : 8, record.mid(lineEnd + 1)});
}

void checkContent(const ContentReading& reading)
{
    const SelectionContent& content = reading.content();
    const int kinds = int(!content.fileURLs.isEmpty()) + int(content.png.has_value()) + int(content.tiff.has_value()) +
                      int(content.text.has_value());
    Fuzzer::require(kinds <= 1, "one kind of content is found");
    Fuzzer::require(kinds == 0 || !reading.keptForms().empty(), "what was found can outlive its owner");
    Fuzzer::require(!content.text || (!content.text->isEmpty() && QUtf8StringView(*content.text).isValidUtf8()),
                    "a text is UTF-8, and not empty");
    for (const SelectionForm& form : reading.keptForms())
        Fuzzer::require(form.bytes().has_value(), "what is kept can be had");
}

void checkText(const QByteArray& bytes)
{
    for (const char* type : SelectionText::targets) {
        const auto text = SelectionText::decode(type, bytes);
        if (!text)
            continue;
        Fuzzer::require(QUtf8StringView(*text).isValidUtf8(), "what is decoded is UTF-8");
        Fuzzer::require(text->size() <= 3 * bytes.size(), "a byte becomes no more than a replacement character");
        Fuzzer::require(SelectionText::latin1(*text).size() <= text->size(), "Latin-1 is not longer");
    }
    const QByteArray utf8 = *SelectionText::decode("UTF8_STRING", bytes);
    Fuzzer::require(SelectionText::decode("UTF8_STRING", utf8) == utf8, "decoded again, it is the same");
    const QByteArray latin1 = *SelectionText::decode("STRING", bytes);
    Fuzzer::require(SelectionText::decode("STRING", SelectionText::latin1(latin1)) == latin1,
                    "Latin-1 is as it was, there and back");
}

} // namespace

/// The first record has the names of the targets, a line each; those after it are the answers.
void Fuzzer::run(QByteArrayView input)
{
    QByteArrayList records = input.toByteArray().split(recordEnd);
    checkText(records.last());
    const QByteArrayList offered = records.takeFirst().split('\n');
    ContentReading reading({{mark}, "thishost"});
    reading.begin({offered.begin(), offered.end()});
    QByteArrayList asked;
    while (const auto target = reading.wanted()) {
        require(!offered.contains(QByteArrayView(mark.data(), mark.size())), "nothing is asked of what is marked");
        require(offered.contains(*target), "what is asked for was offered");
        require(!asked.contains(*target), "nothing is asked for twice");
        asked.append(*target);
        answer(reading, records.isEmpty() ? QByteArray() : records.takeFirst());
    }
    checkContent(reading);
}
