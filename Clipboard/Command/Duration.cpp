#include "Duration.h"

#include <QString>

namespace Clipboard::Command {

namespace {

using namespace std::chrono_literals;

// Longer than any meeting; who wants more can quit the program.
constexpr std::chrono::seconds longest = 24h * 7;

std::optional<std::chrono::seconds> unit(QChar letter)
{
    switch (letter.unicode()) {
    case u's':
        return 1s;
    case u'm':
        return 1min;
    case u'h':
        return 1h;
    case u'd':
        return 24h;
    default:
        return std::nullopt;
    }
}

} // namespace

std::optional<std::chrono::seconds> duration(QStringView text)
{
    std::chrono::seconds sum{};
    while (!text.isEmpty()) {
        qsizetype digits = 0;
        while (digits < text.size() && text.at(digits) >= u'0' && text.at(digits) <= u'9')
            ++digits;
        bool isNumber = false;
        const uint count = text.first(digits).toUInt(&isNumber);
        const auto length = digits < text.size() ? unit(text.at(digits)) : std::nullopt;
        if (!isNumber || !length || count > static_cast<uint>(longest.count()))
            return std::nullopt;
        sum += count * *length;
        text = text.sliced(digits + 1);
    }
    return sum >= 1s && sum <= longest ? std::optional(sum) : std::nullopt;
}

} // namespace Clipboard::Command
