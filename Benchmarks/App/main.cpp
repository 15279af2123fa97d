// The figures of the whole program, measured from outside: docs/benchmarks.md says what each row means.
// Names of groups as arguments (start, capture, panel, frames, editor, safety, commands, desktops) choose these.
// "soak" takes as long as all of them together and is run by its name alone.
#include "Bench.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;
using namespace Clipboard::Benchmarks;

int main(int argc, char** argv)
{
    const QCoreApplication app(argc, argv);
    QStringList wanted = QCoreApplication::arguments().mid(1);
    const Effort effort{wanted.removeAll(u"--short"_s) > 0};
    const std::pair<QString, void (*)(Effort)> groups[] = {
        {u"start"_s, startRows},      {u"capture"_s, captureRows},  {u"panel"_s, panelRows},
        {u"frames"_s, frameRows},     {u"editor"_s, editorRows},    {u"safety"_s, safetyRows},
        {u"commands"_s, commandRows}, {u"desktops"_s, desktopRows},
    };
    if (wanted.contains(u"soak"_s))
        soakRows(effort);
    for (const auto& [name, rows] : groups) {
        if (wanted.isEmpty() || wanted.contains(name))
            rows(effort);
    }
    return 0;
}
