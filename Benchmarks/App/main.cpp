// The figures of the whole program, measured from outside: docs/benchmarks.md says what each row means.
// Names of groups as arguments (start, capture, panel, frames, editor, safety, commands, desktops) choose these.
// "soak", "kills" and "switches" take as long as all of them together and are run by their names alone.
#include "Bench.h"

#include <QCoreApplication>

#include <algorithm>

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
        {u"commands"_s, commandRows}, {u"desktops"_s, desktopRows}, {u"soak"_s, soakRows},
        {u"kills"_s, killRows},       {u"switches"_s, switchRows},
    };
    const QStringList byNameAlone = {u"soak"_s, u"kills"_s, u"switches"_s};
    for (const QString& name : std::as_const(wanted)) {
        if (std::ranges::none_of(groups, [&](const auto& group) { return group.first == name; }))
            giveUp(u"There is no group \"%1\"."_s.arg(name));
    }
    for (const auto& [name, rows] : groups) {
        if (wanted.contains(name) || (wanted.isEmpty() && !byNameAlone.contains(name)))
            rows(effort);
    }
    return 0;
}
