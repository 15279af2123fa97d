#include "Introspection.h"

namespace Clipboard::Bus {

namespace {

constexpr QStringView description = uR"xml(
<interface name="org.freedesktop.Application">
  <method name="Activate"><arg name="platform_data" type="a{sv}" direction="in"/></method>
  <method name="Open">
    <arg name="uris" type="as" direction="in"/>
    <arg name="platform_data" type="a{sv}" direction="in"/>
  </method>
  <method name="ActivateAction">
    <arg name="action_name" type="s" direction="in"/>
    <arg name="parameter" type="av" direction="in"/>
    <arg name="platform_data" type="a{sv}" direction="in"/>
  </method>
</interface>
<interface name="com.tessaly.Tessaly">
  <method name="Toggle"/>
  <method name="Show"/>
  <method name="Hide"/>
  <method name="List">
    <arg name="options" type="a{sv}" direction="in"/>
    <arg name="entries" type="a(usbxssstsu)" direction="out"/>
  </method>
  <method name="Find">
    <arg name="entry" type="s" direction="in"/>
    <arg name="found" type="(usbxssstsu)" direction="out"/>
  </method>
  <method name="Get">
    <arg name="entry" type="s" direction="in"/>
    <arg name="mime_type" type="s" direction="in"/>
    <arg name="content" type="v" direction="out"/>
  </method>
  <method name="Add">
    <arg name="mime_type" type="s" direction="in"/>
    <arg name="content" type="v" direction="in"/>
    <arg name="id" type="s" direction="out"/>
  </method>
  <method name="Copy"><arg name="entry" type="s" direction="in"/></method>
  <method name="Paste"><arg name="entry" type="s" direction="in"/></method>
  <method name="Pin"><arg name="entry" type="s" direction="in"/></method>
  <method name="Unpin"><arg name="entry" type="s" direction="in"/></method>
  <method name="Delete"><arg name="entry" type="s" direction="in"/></method>
  <method name="Annotate"><arg name="entry" type="s" direction="in"/></method>
  <method name="Clear"><arg name="pinned_too" type="b" direction="in"/></method>
  <method name="Actions">
    <arg name="entry" type="s" direction="in"/>
    <arg name="labels" type="as" direction="out"/>
  </method>
  <method name="Run">
    <arg name="entry" type="s" direction="in"/>
    <arg name="label" type="s" direction="in"/>
  </method>
  <method name="Pause"><arg name="seconds" type="u" direction="in"/></method>
  <method name="Resume"/>
  <method name="ShowPreferences"/>
  <method name="Status"><arg name="status" type="a{sv}" direction="out"/></method>
  <method name="Quit"/>
  <signal name="EntryAdded"><arg name="id" type="s"/><arg name="type" type="s"/></signal>
  <signal name="EntryChanged"><arg name="id" type="s"/></signal>
  <signal name="EntryRemoved"><arg name="id" type="s"/></signal>
  <signal name="Paused"><arg name="paused" type="b"/></signal>
</interface>
)xml";

} // namespace

QString introspection()
{
    return description.toString();
}

} // namespace Clipboard::Bus
