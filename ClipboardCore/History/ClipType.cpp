#include "History/ClipType.h"

#include <QString>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace ClipboardCore {

QLatin1String rawValue(ClipType type)
{
    switch (type) {
    case ClipType::text:
        return "text"_L1;
    case ClipType::link:
        return "link"_L1;
    case ClipType::image:
        return "image"_L1;
    case ClipType::color:
        return "color"_L1;
    case ClipType::code:
        return "code"_L1;
    case ClipType::file:
        return "file"_L1;
    }
    Q_UNREACHABLE();
}

std::optional<ClipType> clipTypeFromRawValue(QStringView rawValue)
{
    const auto found = std::find_if(allClipTypes.begin(), allClipTypes.end(),
                                    [rawValue](ClipType type) { return rawValue == ClipboardCore::rawValue(type); });
    return found == allClipTypes.end() ? std::nullopt : std::optional(*found);
}

} // namespace ClipboardCore
