<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US" sourcelanguage="en">
<context>
    <name>ClipItem</name>
    <message numerus="yes">
        <source>%1 and %n more file(s)</source>
        <translation>
            <numerusform>%1 and %n more file</numerusform>
            <numerusform>%1 and %n more files</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Clipboard::CommandCard</name>
    <message>
        <source>⌘1–9</source>
        <translation>Ctrl+1–9</translation>
    </message>
</context>
<context>
    <name>Clipboard::CommandRow</name>
    <message>
        <source>⌘%1</source>
        <translation>Ctrl+%1</translation>
    </message>
</context>
<context>
    <name>Clipboard::EditorToolbar</name>
    <message>
        <source>⌘Z</source>
        <translation>Ctrl+Z</translation>
    </message>
    <message>
        <source>⇧⌘Z</source>
        <translation>Ctrl+Shift+Z</translation>
    </message>
</context>
<context>
    <name>Clipboard::ExitButton</name>
    <message>
        <source>⌘⏎</source>
        <translation>Ctrl+⏎</translation>
    </message>
    <message>
        <source>⌘C</source>
        <translation>Ctrl+C</translation>
    </message>
    <message>
        <source>⌘S</source>
        <translation>Ctrl+S</translation>
    </message>
</context>
<context>
    <name>Clipboard::FilterChip</name>
    <message numerus="yes">
        <source>%n items</source>
        <translation>
            <numerusform>%n item</numerusform>
            <numerusform>%n items</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Clipboard::HistoryListModel</name>
    <message>
        <source>Double-tap to paste</source>
        <translation>Double-click to paste</translation>
    </message>
</context>
<context>
    <name>Clipboard::PanelFooter</name>
    <message>
        <source>⌘K</source>
        <translation>Ctrl+K</translation>
    </message>
    <message>
        <source>⌘⌫</source>
        <translation>Ctrl+⌫</translation>
    </message>
    <message numerus="yes">
        <source>%n item</source>
        <translation>
            <numerusform>%n item</numerusform>
            <numerusform>%n items</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Clipboard::PreviewButton</name>
    <message>
        <source>⌘E</source>
        <translation>Ctrl+E</translation>
    </message>
    <message>
        <source>⌘P</source>
        <translation>Ctrl+P</translation>
    </message>
    <message>
        <source>⌘⌫</source>
        <translation>Ctrl+⌫</translation>
    </message>
</context>
<context>
    <name>Clipboard::SmartActionsSection</name>
    <message>
        <source>⌘K</source>
        <translation>Ctrl+K</translation>
    </message>
</context>
<context>
    <name>Clipboard::HistoryViewModel</name>
    <message>
        <source>Deleted %1 — ⌘Z brings it back</source>
        <translation>Deleted %1 — Ctrl+Z brings it back</translation>
    </message>
    <message>
        <source>History cleared — ⌘Z in the panel brings it back</source>
        <translation>History cleared — Ctrl+Z in the panel brings it back</translation>
    </message>
</context>
<context>
    <name>Clipboard::PasteService</name>
    <message>
        <source>Copied %1 — press ⌘V to paste</source>
        <translation>Copied %1 — press Ctrl+V to paste</translation>
    </message>
</context>
<context>
    <name>EditorLifecycle</name>
    <message>
        <source>Copied %1 — press ⌘V to paste</source>
        <translation>Copied %1 — press Ctrl+V to paste</translation>
    </message>
</context>
<context>
    <name>SmartActions</name>
    <message>
        <source>Reveal in Finder</source>
        <translation>Show in Files</translation>
    </message>
    <message>
        <source>Revealing in Finder …</source>
        <translation>Showing in Files …</translation>
    </message>
</context>
</TS>
