#include "Actions/SmartActions.h"
#include "Fuzzer.h"
#include "Support/WhiteSpace.h"

#include <QSet>

using namespace ClipboardCore;

/// The first byte chooses the type.
void Fuzzer::run(QByteArrayView input)
{
    if (input.isEmpty())
        return;
    ClipItem item;
    item.type = static_cast<ClipType>(static_cast<quint8>(input.front()) % (static_cast<int>(ClipType::file) + 1));
    item.content = text(input.sliced(1));

    // Where a link leads, the white space around it has no part.
    const bool isLink = item.type == ClipType::link;
    const QString whole = isLink ? text(WhiteSpace::trimmed(item.content.utf8())).toString() : item.content.toString();
    QSet<QString> labels;
    for (const SmartAction& action : SmartActions::actions(item)) {
        const SmartActionResult result = action.run();
        labels.insert(action.label);
        require(!action.label.isEmpty() && !result.toast.isEmpty(), "an action has a name and a notice");
        require(result == action.run(), "an action answers the same again");
        if (result.effect.kind != SmartActionEffect::Kind::copy)
            require(result.effect.payload == whole, "other effects are for the whole content");
    }
    const auto count = SmartActions::actions(item).size();
    require(count >= 1 && labels.size() == count, "there are actions, each with another name");
}
