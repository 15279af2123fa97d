# A program that takes pictures: Ctrl+V writes the picture on the clipboard into the file that it is given.
import os
import sys

import gi

gi.require_version("Gdk", "3.0")
gi.require_version("Gtk", "3.0")
from gi.repository import Gdk, Gtk  # noqa: E402


def key_pressed(_window, event):
    if event.keyval == Gdk.KEY_v and event.state & Gdk.ModifierType.CONTROL_MASK:
        picture = Gtk.Clipboard.get(Gdk.SELECTION_CLIPBOARD).wait_for_image()
        if picture:
            picture.savev(sys.argv[1] + ".part", "png", [], [])
            os.rename(sys.argv[1] + ".part", sys.argv[1])
    return True


window = Gtk.Window(title="picture taker")
window.connect("key-press-event", key_pressed)
window.connect("destroy", Gtk.main_quit)
window.show_all()
Gtk.main()
