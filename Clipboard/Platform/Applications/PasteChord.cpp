#include "PasteChord.h"

#include <algorithm>

namespace Clipboard {

namespace {

// In lower case. A program's instance name may be changed by the user, its class hardly ever is; either decides.
constexpr const char* xtermKin[] = {"xterm",        "uxterm", "lxterm", "koi8rxterm", "urxvt", "rxvt",
                                    "rxvt-unicode", "mrxvt",  "aterm",  "eterm",      "wterm", "mlterm"};

constexpr const char* terminals[] = {"gnome-terminal",
                                     "gnome-terminal-server",
                                     "org.gnome.terminal",
                                     "org.gnome.console",
                                     "kgx",
                                     "org.gnome.ptyxis",
                                     "ptyxis",
                                     "konsole",
                                     "org.kde.konsole",
                                     "yakuake",
                                     "xfce4-terminal",
                                     "mate-terminal",
                                     "lxterminal",
                                     "qterminal",
                                     "deepin-terminal",
                                     "io.elementary.terminal",
                                     "kitty",
                                     "alacritty",
                                     "foot",
                                     "footclient",
                                     "wezterm",
                                     "org.wezfurlong.wezterm",
                                     "com.mitchellh.ghostty",
                                     "contour",
                                     "st",
                                     "st-256color",
                                     "tilix",
                                     "com.gexperts.tilix",
                                     "terminator",
                                     "terminology",
                                     "guake",
                                     "tilda",
                                     "sakura",
                                     "roxterm",
                                     "cool-retro-term",
                                     "hyper",
                                     "tabby"};

bool names(const auto& list, const WindowClass& windowClass)
{
    return std::ranges::any_of(list, [&](QByteArrayView name) {
        return name.compare(windowClass.name, Qt::CaseInsensitive) == 0 ||
               name.compare(windowClass.instance, Qt::CaseInsensitive) == 0;
    });
}

} // namespace

PasteChord pasteChordOf(const WindowClass& windowClass)
{
    if (names(xtermKin, windowClass))
        return PasteChord::ShiftInsert;
    return names(terminals, windowClass) ? PasteChord::ControlShiftV : PasteChord::ControlV;
}

} // namespace Clipboard
