<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>AnnotationTool</name>
    <message>
        <source>Crop</source>
        <translation>Zuschneiden</translation>
    </message>
    <message>
        <source>Drag the edges to crop, or inside to move the crop</source>
        <translation>Ränder ziehen zum Zuschneiden, innen ziehen zum Verschieben</translation>
    </message>
    <message>
        <source>Arrow</source>
        <translation>Pfeil</translation>
    </message>
    <message>
        <source>Drag to draw an arrow</source>
        <translation>Ziehen zeichnet einen Pfeil</translation>
    </message>
    <message>
        <source>Rectangle</source>
        <translation>Rechteck</translation>
    </message>
    <message>
        <source>Drag to draw a rectangle</source>
        <translation>Ziehen zeichnet ein Rechteck</translation>
    </message>
    <message>
        <source>Text</source>
        <translation>Text</translation>
    </message>
    <message>
        <source>Click to add text, double-click text to edit it</source>
        <translation>Klicken fügt Text ein, Doppelklick auf Text bearbeitet ihn</translation>
    </message>
    <message>
        <source>Highlighter</source>
        <translation>Textmarker</translation>
    </message>
    <message>
        <source>Drag to highlight</source>
        <translation>Ziehen markiert</translation>
    </message>
    <message>
        <source>Pixelate</source>
        <translation>Verpixeln</translation>
    </message>
    <message>
        <source>Drag to pixelate</source>
        <translation>Ziehen verpixelt</translation>
    </message>
    <message>
        <source>Counter</source>
        <translation>Nummer</translation>
    </message>
    <message>
        <source>Click to number a step</source>
        <translation>Klicken nummeriert einen Schritt</translation>
    </message>
</context>
<context>
    <name>CanvasOverlay</name>
    <message>
        <source>%1 × %2</source>
        <translation>%1 × %2</translation>
    </message>
</context>
<context>
    <name>ClipItem</name>
    <message>
        <source>%1m</source>
        <translation>%1 Min.</translation>
    </message>
    <message>
        <source>%1h</source>
        <translation>%1 Std.</translation>
    </message>
    <message>
        <source>%1d</source>
        <translation>%1 T.</translation>
    </message>
    <message>
        <source>copied now</source>
        <translation>gerade eben kopiert</translation>
    </message>
    <message numerus="yes">
        <source>%1 and %n more file(s)</source>
        <translation>
            <numerusform>%1 und %n weitere Datei</numerusform>
            <numerusform>%1 und %n weitere Dateien</numerusform>
        </translation>
    </message>
    <message>
        <source>copied yesterday</source>
        <translation>gestern kopiert</translation>
    </message>
    <message>
        <source>copied %1</source>
        <translation>vor %1 kopiert</translation>
    </message>
    <message>
        <source>Text</source>
        <translation>Text</translation>
    </message>
    <message>
        <source>Links</source>
        <translation>Links</translation>
    </message>
    <message>
        <source>Images</source>
        <translation>Bilder</translation>
    </message>
    <message>
        <source>Colors</source>
        <translation>Farben</translation>
    </message>
    <message>
        <source>Code</source>
        <translation>Code</translation>
    </message>
    <message>
        <source>Files</source>
        <translation>Dateien</translation>
    </message>
    <message>
        <source>text</source>
        <translation>Text</translation>
    </message>
    <message>
        <source>link</source>
        <translation>Link</translation>
    </message>
    <message>
        <source>image</source>
        <translation>Bild</translation>
    </message>
    <message>
        <source>color</source>
        <translation>Farbe</translation>
    </message>
    <message>
        <source>code</source>
        <translation>Code</translation>
    </message>
    <message>
        <source>file</source>
        <translation>Datei</translation>
    </message>
    <message>
        <source>Image</source>
        <translation>Bild</translation>
    </message>
    <message>
        <source>from %1</source>
        <translation>aus %1</translation>
    </message>
    <message>
        <source>pinned</source>
        <translation>angeheftet</translation>
    </message>
    <message>
        <source>just now</source>
        <translation>gerade eben</translation>
    </message>
    <message>
        <source>yesterday</source>
        <translation>gestern</translation>
    </message>
    <message>
        <source>%1 ago</source>
        <translation>vor %1</translation>
    </message>
    <message>
        <source>“%1”</source>
        <translation>„%1“</translation>
    </message>
    <message>
        <source>code snippet</source>
        <translation>Codeausschnitt</translation>
    </message>
</context>
<context>
    <name>Clipboard::AboutDialog</name>
    <message>
        <source>%1 opens it.</source>
        <translation>%1 öffnet ihn.</translation>
    </message>
    <message>
        <source>Tessaly</source>
        <translation>Tessaly</translation>
    </message>
    <message>
        <source>Version %1
A clipboard history for your desktop.
Free software under the MIT licence.</source>
        <translation>Version %1
Ein Zwischenablageverlauf für den Desktop.
Freie Software unter der MIT-Lizenz.</translation>
    </message>
    <message>
        <source>About Tessaly</source>
        <translation>Über Tessaly</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>esc</source>
        <translation>Esc</translation>
    </message>
</context>
<context>
    <name>Clipboard::CanvasView</name>
    <message>
        <source>Picture</source>
        <translation>Bild</translation>
    </message>
</context>
<context>
    <name>Clipboard::ChordButton</name>
    <message>
        <source>Press the new key</source>
        <translation>Neue Taste drücken</translation>
    </message>
    <message>
        <source>Hot key: %1</source>
        <translation>Tastenkürzel: %1</translation>
    </message>
</context>
<context>
    <name>Clipboard::ClearButton</name>
    <message>
        <source>Clear search</source>
        <translation>Suche leeren</translation>
    </message>
</context>
<context>
    <name>Clipboard::ClearHistoryDialog</name>
    <message>
        <source>Clear clipboard history?</source>
        <translation>Zwischenablageverlauf leeren?</translation>
    </message>
    <message>
        <source>This removes all unpinned items. Pinned items are kept.</source>
        <translation>Alle nicht angehefteten Einträge werden entfernt. Angeheftete Einträge bleiben erhalten.</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>Leeren</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>esc</source>
        <translation>Esc</translation>
    </message>
</context>
<context>
    <name>Clipboard::CommandCard</name>
    <message>
        <source>Filter actions…</source>
        <translation>Aktionen filtern …</translation>
    </message>
    <message>
        <source>Smart Actions</source>
        <translation>Schnellaktionen</translation>
    </message>
    <message>
        <source>No matching actions</source>
        <translation>Keine passenden Aktionen</translation>
    </message>
    <message>
        <source>Move</source>
        <translation>Wahl</translation>
    </message>
    <message>
        <source>Run</source>
        <translation>Start</translation>
    </message>
    <message>
        <source>⌘1–9</source>
        <translation>Strg+1–9</translation>
    </message>
    <message>
        <source>Jump</source>
        <translation>Direkt</translation>
    </message>
    <message>
        <source>esc</source>
        <translation>Esc</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
</context>
<context>
    <name>Clipboard::CommandRow</name>
    <message>
        <source>⌘%1</source>
        <translation>Strg+%1</translation>
    </message>
</context>
<context>
    <name>Clipboard::DiscardQuestion</name>
    <message>
        <source>Discard annotations?</source>
        <translation>Beschriftungen verwerfen?</translation>
    </message>
    <message>
        <source>Your changes to this picture will be lost.</source>
        <translation>Die Änderungen an diesem Bild gehen verloren.</translation>
    </message>
    <message>
        <source>Discard</source>
        <translation>Verwerfen</translation>
    </message>
    <message>
        <source>Keep Editing</source>
        <translation>Weiter bearbeiten</translation>
    </message>
    <message>
        <source>esc</source>
        <translation>Esc</translation>
    </message>
</context>
<context>
    <name>Clipboard::EditorController</name>
    <message>
        <source>Save As…</source>
        <translation>Speichern unter …</translation>
    </message>
    <message>
        <source>PNG pictures (*.png)</source>
        <translation>PNG-Bilder (*.png)</translation>
    </message>
    <message>
        <source>Saved image</source>
        <translation>Bild gespeichert</translation>
    </message>
    <message>
        <source>Couldn&apos;t save image</source>
        <translation>Bild konnte nicht gespeichert werden</translation>
    </message>
</context>
<context>
    <name>Clipboard::EditorToolbar</name>
    <message>
        <source>Red</source>
        <translation>Rot</translation>
    </message>
    <message>
        <source>Yellow</source>
        <translation>Gelb</translation>
    </message>
    <message>
        <source>Green</source>
        <translation>Grün</translation>
    </message>
    <message>
        <source>Blue</source>
        <translation>Blau</translation>
    </message>
    <message>
        <source>Black</source>
        <translation>Schwarz</translation>
    </message>
    <message>
        <source>White</source>
        <translation>Weiß</translation>
    </message>
    <message>
        <source>Small</source>
        <translation>Klein</translation>
    </message>
    <message>
        <source>Medium</source>
        <translation>Mittel</translation>
    </message>
    <message>
        <source>Large</source>
        <translation>Groß</translation>
    </message>
    <message>
        <source>Tools</source>
        <translation>Werkzeuge</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>Rückgängig</translation>
    </message>
    <message>
        <source>⌘Z</source>
        <translation>Strg+Z</translation>
    </message>
    <message>
        <source>Redo</source>
        <translation>Wiederholen</translation>
    </message>
    <message>
        <source>⇧⌘Z</source>
        <translation>Strg+Umschalt+Z</translation>
    </message>
</context>
<context>
    <name>Clipboard::EditorWindow</name>
    <message>
        <source>Annotate</source>
        <translation>Beschriften</translation>
    </message>
    <message>
        <source>%1 · esc to close</source>
        <translation>%1 · Esc schließt</translation>
    </message>
    <message>
        <source>%1%</source>
        <extracomment>How large the picture is shown</extracomment>
        <translation>%1 %</translation>
    </message>
</context>
<context>
    <name>Clipboard::ExitButton</name>
    <message>
        <source>Paste</source>
        <translation>Einfügen</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Kopieren</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Speichern</translation>
    </message>
    <message>
        <source>Save · with Shift: Save As…</source>
        <translation>Speichern · mit Umschalt: Speichern unter …</translation>
    </message>
    <message>
        <source>⌘⏎</source>
        <translation>Strg+⏎</translation>
    </message>
    <message>
        <source>⌘C</source>
        <translation>Strg+C</translation>
    </message>
    <message>
        <source>⌘S</source>
        <translation>Strg+S</translation>
    </message>
</context>
<context>
    <name>Clipboard::FilterChip</name>
    <message>
        <source>All</source>
        <translation>Alle</translation>
    </message>
    <message numerus="yes">
        <source>%n items</source>
        <translation>
            <numerusform>%n Eintrag</numerusform>
            <numerusform>%n Einträge</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Clipboard::FloatingPanel</name>
    <message>
        <source>Tessaly</source>
        <translation>Tessaly</translation>
    </message>
</context>
<context>
    <name>Clipboard::HistoryEncryption</name>
    <message>
        <source>The keyring does not have its key.</source>
        <translation>Der Schlüsselbund hat den Schlüssel dazu nicht.</translation>
    </message>
    <message>
        <source>The keyring has not answered yet.</source>
        <translation>Der Schlüsselbund hat noch nicht geantwortet.</translation>
    </message>
    <message>
        <source>The encrypted history is not open, and what is copied is kept only until the end: %1</source>
        <translation>Der verschlüsselte Verlauf ist nicht geöffnet, und was kopiert wird, bleibt nur bis zum Ende: %1</translation>
    </message>
    <message>
        <source>The history is not encrypted: %1</source>
        <translation>Der Verlauf ist nicht verschlüsselt: %1</translation>
    </message>
    <message>
        <source>Encrypted pictures cannot be shown: %1</source>
        <translation>Verschlüsselte Bilder können nicht gezeigt werden: %1</translation>
    </message>
</context>
<context>
    <name>Clipboard::KeyRequest</name>
    <message>
        <source>This session has no keyring, such as that of GNOME or KDE.</source>
        <translation>Diese Sitzung hat keinen Schlüsselbund, wie etwa den von GNOME oder KDE.</translation>
    </message>
    <message>
        <source>The keyring fails: %1</source>
        <translation>Der Schlüsselbund versagt: %1</translation>
    </message>
    <message>
        <source>The keyring does not have its key.</source>
        <translation>Der Schlüsselbund hat den Schlüssel dazu nicht.</translation>
    </message>
    <message>
        <source>The keyring is locked.</source>
        <translation>Der Schlüsselbund ist gesperrt.</translation>
    </message>
    <message>
        <source>The keyring was not unlocked.</source>
        <translation>Der Schlüsselbund wurde nicht entsperrt.</translation>
    </message>
    <message>
        <source>There is no keyring that takes new keys.</source>
        <translation>Es gibt keinen Schlüsselbund, der neue Schlüssel aufnimmt.</translation>
    </message>
    <message>
        <source>Key of Tessaly’s clipboard history</source>
        <translation>Schlüssel zum Verlauf der Zwischenablage von Tessaly</translation>
    </message>
    <message>
        <source>The keyring does not give back what it was given.</source>
        <translation>Der Schlüsselbund gibt nicht zurück, was er bekommen hat.</translation>
    </message>
</context>
<context>
    <name>Clipboard::HistoryList</name>
    <message>
        <source>Clipboard history</source>
        <translation>Zwischenablageverlauf</translation>
    </message>
</context>
<context>
    <name>Clipboard::HistoryListModel</name>
    <message>
        <source>Double-tap to paste</source>
        <translation>Doppelklick fügt ein</translation>
    </message>
</context>
<context>
    <name>Clipboard::ActionChip</name>
    <message>
        <source>Working …</source>
        <translation>Läuft …</translation>
    </message>
</context>
<context>
    <name>Clipboard::HistoryViewModel</name>
    <message>
        <source>Copied %1</source>
        <translation>Kopiert: %1</translation>
    </message>
    <message>
        <source>File not found</source>
        <translation>Datei nicht gefunden</translation>
    </message>
    <message>
        <source>File no longer exists — removed from history</source>
        <translation>Datei existiert nicht mehr – aus dem Verlauf entfernt</translation>
    </message>
    <message>
        <source>Deleted %1 — ⌘Z brings it back</source>
        <translation>Gelöscht: %1 – Strg+Z holt es zurück</translation>
    </message>
    <message>
        <source>History cleared — ⌘Z in the panel brings it back</source>
        <translation>Verlauf geleert – Strg+Z im Panel holt ihn zurück</translation>
    </message>
    <message>
        <source>Brought back %1</source>
        <translation>Zurückgeholt: %1</translation>
    </message>
    <message>
        <source>Brought back what was cleared</source>
        <translation>Geleerter Verlauf zurückgeholt</translation>
    </message>
</context>
<context>
    <name>Clipboard::ImageBody</name>
    <message>
        <source>Image unavailable</source>
        <translation>Bild nicht verfügbar</translation>
    </message>
</context>
<context>
    <name>Clipboard::InlineMenu</name>
    <message>
        <source>Menu</source>
        <translation>Menü</translation>
    </message>
</context>
<context>
    <name>Clipboard::LabelEditor</name>
    <message>
        <source>Label text</source>
        <translation>Beschriftungstext</translation>
    </message>
</context>
<context>
    <name>Clipboard::ListRow</name>
    <message>
        <source>Pinned</source>
        <translation>Angeheftet</translation>
    </message>
</context>
<context>
    <name>Clipboard::MenuButton</name>
    <message>
        <source>Menu</source>
        <translation>Menü</translation>
    </message>
</context>
<context>
    <name>Clipboard::MetaCaption</name>
    <message numerus="yes">
        <source>%Ln characters</source>
        <translation>
            <numerusform>%Ln Zeichen</numerusform>
            <numerusform>%Ln Zeichen</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln lines</source>
        <translation>
            <numerusform>%Ln Zeile</numerusform>
            <numerusform>%Ln Zeilen</numerusform>
        </translation>
    </message>
    <message>
        <source>Unknown</source>
        <translation>Unbekannt</translation>
    </message>
</context>
<context>
    <name>Clipboard::PanelFooter</name>
    <message numerus="yes">
        <source>%n item</source>
        <translation>
            <numerusform>%n Eintrag</numerusform>
            <numerusform>%n Einträge</numerusform>
        </translation>
    </message>
    <message>
        <source>Navigate</source>
        <translation>Navigieren</translation>
    </message>
    <message>
        <source>Paste</source>
        <translation>Einfügen</translation>
    </message>
    <message>
        <source>⌘K</source>
        <translation>Strg+K</translation>
    </message>
    <message>
        <source>Actions</source>
        <translation>Aktionen</translation>
    </message>
    <message>
        <source>⌘⌫</source>
        <translation>Strg+⌫</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Löschen</translation>
    </message>
</context>
<context>
    <name>Clipboard::PanelHeader</name>
    <message>
        <source>Search clipboard…</source>
        <translation>Zwischenablage durchsuchen …</translation>
    </message>
</context>
<context>
    <name>Clipboard::PanelView</name>
    <message>
        <source>No Results</source>
        <translation>Keine Ergebnisse</translation>
    </message>
    <message>
        <source>Nothing matches “%1”</source>
        <translation>Nichts passt zu „%1“</translation>
    </message>
    <message>
        <source>Nothing of this type has been copied yet.</source>
        <translation>Von diesem Typ wurde noch nichts kopiert.</translation>
    </message>
    <message>
        <source>Nothing Copied Yet</source>
        <translation>Noch nichts kopiert</translation>
    </message>
    <message>
        <source>Copy something — it will show up here.</source>
        <translation>Kopierte Inhalte erscheinen hier.</translation>
    </message>
</context>
<context>
    <name>Clipboard::PasteService</name>
    <message>
        <source>Copied %1 — press ⌘V to paste</source>
        <translation>Kopiert: %1 – mit Strg+V einfügen</translation>
    </message>
    <message>
        <source>Pasted %1</source>
        <translation>Eingefügt: %1</translation>
    </message>
</context>
<context>
    <name>Clipboard::PreferencesWindow</name>
    <message>
        <source>Preferences</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>Hinzufügen</translation>
    </message>
    <message>
        <source>Add Application…</source>
        <translation>Programm hinzufügen …</translation>
    </message>
    <message>
        <source>Regular expression</source>
        <translation>Regulärer Ausdruck</translation>
    </message>
    <message>
        <source>Nothing was copied from another one</source>
        <translation>Aus keinem anderen wurde kopiert</translation>
    </message>
    <message>
        <source>Pause Recording</source>
        <translation>Aufzeichnung anhalten</translation>
    </message>
    <message>
        <source>Resume Recording</source>
        <translation>Aufzeichnung fortsetzen</translation>
    </message>
    <message>
        <source>Copies are being recorded.</source>
        <translation>Kopien werden aufgezeichnet.</translation>
    </message>
    <message>
        <source>This is no regular expression that can be kept.</source>
        <translation>Das ist kein regulärer Ausdruck, der aufgenommen werden kann.</translation>
    </message>
    <message>
        <source>The preference could not be kept.</source>
        <translation>Die Einstellung konnte nicht gespeichert werden.</translation>
    </message>
</context>
<context>
    <name>Clipboard::PreviewButton</name>
    <message>
        <source>Paste</source>
        <translation>Einfügen</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Kopieren</translation>
    </message>
    <message>
        <source>Annotate</source>
        <translation>Beschriften</translation>
    </message>
    <message>
        <source>Pin</source>
        <translation>Anheften</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Löschen</translation>
    </message>
    <message>
        <source>⌘E</source>
        <translation>Strg+E</translation>
    </message>
    <message>
        <source>⌘P</source>
        <translation>Strg+P</translation>
    </message>
    <message>
        <source>⌘⌫</source>
        <translation>Strg+⌫</translation>
    </message>
</context>
<context>
    <name>Clipboard::PreviewPane</name>
    <message>
        <source>No Selection</source>
        <translation>Keine Auswahl</translation>
    </message>
</context>
<context>
    <name>Clipboard::QRInline</name>
    <message>
        <source>QR code for this item</source>
        <translation>QR-Code für diesen Eintrag</translation>
    </message>
</context>
<context>
    <name>Clipboard::SmartActionsSection</name>
    <message>
        <source>⌘K</source>
        <translation>Strg+K</translation>
    </message>
    <message>
        <source>Open command sheet</source>
        <translation>Aktionsliste öffnen</translation>
    </message>
    <message>
        <source>Smart Actions</source>
        <translation>Schnellaktionen</translation>
    </message>
</context>
<context>
    <name>Clipboard::StatusItem</name>
    <message>
        <source>Show History</source>
        <translation>Verlauf zeigen</translation>
    </message>
    <message>
        <source>Pause Recording</source>
        <translation>Aufzeichnung anhalten</translation>
    </message>
    <message>
        <source>Resume Recording</source>
        <translation>Aufzeichnung fortsetzen</translation>
    </message>
    <message>
        <source>Preferences…</source>
        <translation>Einstellungen …</translation>
    </message>
    <message>
        <source>Clear History…</source>
        <translation>Verlauf leeren …</translation>
    </message>
    <message>
        <source>Launch at Login</source>
        <translation>Beim Anmelden starten</translation>
    </message>
    <message>
        <source>About Tessaly</source>
        <translation>Über Tessaly</translation>
    </message>
    <message>
        <source>Quit Tessaly</source>
        <translation>Tessaly beenden</translation>
    </message>
</context>
<context>
    <name>Clipboard::StatusItemController</name>
    <message>
        <source>%1 opens this window from everywhere.</source>
        <translation>%1 öffnet dieses Fenster von überall aus.</translation>
    </message>
    <message>
        <source>What programs mark as secret, such as passwords, is never recorded.</source>
        <translation>Was als geheim gekennzeichnet ist, etwa Passwörter, wird nie aufgezeichnet.</translation>
    </message>
    <message>
        <source>Recording is paused until %1.</source>
        <translation>Die Aufzeichnung pausiert bis %1.</translation>
    </message>
    <message>
        <source>Recording is paused.</source>
        <translation>Die Aufzeichnung pausiert.</translation>
    </message>
    <message>
        <source>The history could not be read; it is kept as %1.</source>
        <translation>Der Verlauf war nicht lesbar; er ist als %1 aufbewahrt.</translation>
    </message>
    <message>
        <source>The history cannot be saved: %1</source>
        <translation>Der Verlauf lässt sich nicht speichern: %1</translation>
    </message>
    <message>
        <source>A copied picture cannot be saved yet; Tessaly tries again until it can.</source>
        <translation>Ein kopiertes Bild lässt sich noch nicht sichern; Tessaly versucht es weiter.</translation>
    </message>
</context>
<context>
    <name>Clipboard::TextBody</name>
    <message>
        <source>Preview shows the first %1 characters — Paste inserts the full text.</source>
        <translation>Die Vorschau zeigt die ersten %1 Zeichen – „Einfügen“ fügt den ganzen Text ein.</translation>
    </message>
</context>
<context>
    <name>Clipboard::WordList</name>
    <message>
        <source>Remove %1</source>
        <translation>%1 entfernen</translation>
    </message>
</context>
<context>
    <name>EditorLifecycle</name>
    <message>
        <source>Couldn&apos;t paste image</source>
        <translation>Bild konnte nicht eingefügt werden</translation>
    </message>
    <message>
        <source>Couldn&apos;t copy image</source>
        <translation>Bild konnte nicht kopiert werden</translation>
    </message>
    <message>
        <source>Couldn&apos;t save image</source>
        <translation>Bild konnte nicht gespeichert werden</translation>
    </message>
    <message>
        <source>Copied %1 — press ⌘V to paste</source>
        <translation>Kopiert: %1 – mit Strg+V einfügen</translation>
    </message>
    <message>
        <source>Copied %1</source>
        <translation>Kopiert: %1</translation>
    </message>
    <message>
        <source>Saved image</source>
        <translation>Bild gespeichert</translation>
    </message>
</context>
<context>
    <name>HotKeyGrabber</name>
    <message>
        <source>No program can take %1 on GNOME: “tessaly bind” puts it into its settings.</source>
        <translation>Unter GNOME kann kein Programm %1 bekommen: „tessaly bind“ trägt es in die Einstellungen ein.</translation>
    </message>
    <message>
        <source>Open the clipboard’s history</source>
        <translation>Verlauf der Zwischenablage öffnen</translation>
    </message>
    <message>
        <source>%1 could not be bound: %2</source>
        <translation>%1 konnte nicht belegt werden: %2</translation>
    </message>
    <message>
        <source>%1 is in use by another program. Choose another key in Preferences.</source>
        <translation>%1 wird von einem anderen Programm verwendet. Bitte in den Einstellungen eine andere Taste wählen.</translation>
    </message>
    <message>
        <source>The keyboard has no key for %1. Choose another one in Preferences.</source>
        <translation>Die Tastatur hat keine Taste für %1. Bitte in den Einstellungen eine andere wählen.</translation>
    </message>
    <message>
        <source>The system settings have no key that opens Tessaly.</source>
        <translation>In den Systemeinstellungen gibt es keine Taste, die Tessaly öffnet.</translation>
    </message>
</context>
<context>
    <name>Keys</name>
    <message>
        <source>Return</source>
        <translation>Eingabetaste</translation>
    </message>
    <message>
        <source>Backspace</source>
        <translation>Rücktaste</translation>
    </message>
</context>
<context>
    <name>PanelMenus</name>
    <message>
        <source>Annotate</source>
        <translation>Beschriften</translation>
    </message>
    <message>
        <source>Unpin</source>
        <translation>Lösen</translation>
    </message>
    <message>
        <source>Pin</source>
        <translation>Anheften</translation>
    </message>
    <message>
        <source>Paste</source>
        <translation>Einfügen</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Kopieren</translation>
    </message>
    <message>
        <source>Actions…</source>
        <translation>Aktionen …</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Löschen</translation>
    </message>
</context>
<context>
    <name>PlatformLoader</name>
    <message>
        <source>The compositor takes keys for windows of X11 only.</source>
        <translation>Der Compositor nimmt Tasten nur für Fenster von X11 an.</translation>
    </message>
    <message>
        <source>The clipboard cannot be watched in this session: there is no X11 display.</source>
        <translation>Die Zwischenablage kann in dieser Sitzung nicht beobachtet werden: Es gibt keine X11-Anzeige.</translation>
    </message>
    <message>
        <source>No key can be sent in this session: there is no X11 display.</source>
        <translation>In dieser Sitzung können keine Tasten gesendet werden: Es gibt keine X11-Anzeige.</translation>
    </message>
    <message>
        <source>%1 is not available in this session: there is no X11 display.</source>
        <translation>%1 ist in dieser Sitzung nicht verfügbar: Es gibt keine X11-Anzeige.</translation>
    </message>
    <message>
        <source>The clipboard cannot be watched in this session: the display has no XFixes extension.</source>
        <translation>Die Zwischenablage kann in dieser Sitzung nicht beobachtet werden: Der Anzeige fehlt die XFixes-Erweiterung.</translation>
    </message>
    <message>
        <source>%1 cannot be bound from here: have the desktop’s settings run “tessaly toggle” on a key. In sway: bindsym --no-repeat Mod4+Shift+v exec tessaly toggle</source>
        <translation>%1 lässt sich von hier aus nicht belegen: Bitte in den Einstellungen der Arbeitsumgebung „tessaly toggle“ auf eine Taste legen. In sway: bindsym --no-repeat Mod4+Shift+v exec tessaly toggle</translation>
    </message>
    <message>
        <source>No key can be sent in this session: the display has no XTEST extension.</source>
        <translation>In dieser Sitzung können keine Tasten gesendet werden: Der Anzeige fehlt die XTEST-Erweiterung.</translation>
    </message>
</context>
<context>
    <name>Preference</name>
    <message>
        <source>Opening</source>
        <translation>Öffnen</translation>
    </message>
    <message>
        <source>Hot key</source>
        <translation>Tastenkürzel</translation>
    </message>
    <message>
        <source>Opens the panel from everywhere.</source>
        <translation>Öffnet das Fenster von überall aus.</translation>
    </message>
    <message>
        <source>Select</source>
        <translation>Auswahl</translation>
    </message>
    <message>
        <source>Which entry is selected when the panel opens.</source>
        <translation>Welcher Eintrag beim Öffnen ausgewählt ist.</translation>
    </message>
    <message>
        <source>First row</source>
        <translation>Erste Zeile</translation>
    </message>
    <message>
        <source>Newest copy</source>
        <translation>Neueste Kopie</translation>
    </message>
    <message>
        <source>Launch at Login</source>
        <translation>Beim Anmelden starten</translation>
    </message>
    <message>
        <source>History</source>
        <translation>Verlauf</translation>
    </message>
    <message>
        <source>Entries kept</source>
        <translation>Einträge</translation>
    </message>
    <message>
        <source>Pinned entries always stay.</source>
        <translation>Angeheftete bleiben immer.</translation>
    </message>
    <message>
        <source>Days kept</source>
        <translation>Tage</translation>
    </message>
    <message>
        <source>Empty for no limit.</source>
        <translation>Leer für unbegrenzt.</translation>
    </message>
    <message>
        <source>Forget at the end</source>
        <translation>Am Ende vergessen</translation>
    </message>
    <message>
        <source>Only pinned entries stay when Tessaly ends.</source>
        <translation>Nur Angeheftetes bleibt, wenn Tessaly endet.</translation>
    </message>
    <message>
        <source>Forget what is cleared</source>
        <translation>Geleertes vergessen</translation>
    </message>
    <message>
        <source>Within a minute, as password managers do.</source>
        <translation>Binnen einer Minute, wie es Passwortverwaltungen tun.</translation>
    </message>
    <message>
        <source>Recording</source>
        <translation>Aufzeichnung</translation>
    </message>
    <message>
        <source>Record</source>
        <translation>Aufgezeichnet werden</translation>
    </message>
    <message>
        <source>Text</source>
        <translation>Text</translation>
    </message>
    <message>
        <source>Links</source>
        <translation>Links</translation>
    </message>
    <message>
        <source>Images</source>
        <translation>Bilder</translation>
    </message>
    <message>
        <source>Colors</source>
        <translation>Farben</translation>
    </message>
    <message>
        <source>Code</source>
        <translation>Code</translation>
    </message>
    <message>
        <source>Files</source>
        <translation>Dateien</translation>
    </message>
    <message>
        <source>Never from</source>
        <translation>Nie aus</translation>
    </message>
    <message>
        <source>Applications whose copies are not recorded.</source>
        <translation>Programme, aus denen nichts aufgezeichnet wird.</translation>
    </message>
    <message>
        <source>Never matching</source>
        <translation>Nie mit Muster</translation>
    </message>
    <message>
        <source>Texts with one of these regular expressions in them are not recorded.</source>
        <translation>Texte mit einem dieser regulären Ausdrücke werden nicht aufgezeichnet.</translation>
    </message>
    <message>
        <source>Encrypt the history</source>
        <translation>Verlauf verschlüsseln</translation>
    </message>
    <message>
        <source>Its files open only with a key in your keyring.</source>
        <translation>Seine Dateien öffnet nur ein Schlüssel in Ihrem Schlüsselbund.</translation>
    </message>
</context>
<context>
    <name>QShortcut</name>
    <message>
        <source>Del</source>
        <translation>Entf</translation>
    </message>
    <message>
        <source>Ctrl</source>
        <translation>Strg</translation>
    </message>
    <message>
        <source>Super</source>
        <translation>Super</translation>
    </message>
    <message>
        <source>Alt</source>
        <translation>Alt</translation>
    </message>
    <message>
        <source>Shift</source>
        <translation>Umschalt</translation>
    </message>
    <message>
        <source>Space</source>
        <translation>Leertaste</translation>
    </message>
    <message>
        <source>Insert</source>
        <translation>Einfg</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Entf</translation>
    </message>
    <message>
        <source>Home</source>
        <translation>Pos1</translation>
    </message>
    <message>
        <source>End</source>
        <translation>Ende</translation>
    </message>
    <message>
        <source>PageUp</source>
        <translation>Bild auf</translation>
    </message>
    <message>
        <source>PageDown</source>
        <translation>Bild ab</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>Pause</translation>
    </message>
    <message>
        <source>Print</source>
        <translation>Druck</translation>
    </message>
</context>
<context>
    <name>ResultFile</name>
    <message>
        <source>Annotated %1</source>
        <translation>Beschriftet %1</translation>
    </message>
</context>
<context>
    <name>SmartActionRunner</name>
    <message>
        <source>Couldn&apos;t load image</source>
        <translation>Bild konnte nicht geladen werden</translation>
    </message>
    <message>
        <source>No text found</source>
        <translation>Kein Text gefunden</translation>
    </message>
    <message>
        <source>Copied %1 chars of text</source>
        <translation>%1 Zeichen Text kopiert</translation>
    </message>
    <message>
        <source>Couldn&apos;t make QR code</source>
        <translation>QR-Code konnte nicht erzeugt werden</translation>
    </message>
    <message>
        <source>QR code copied · scan from preview</source>
        <translation>QR-Code kopiert · in der Vorschau scannen</translation>
    </message>
    <message>
        <source>Copied Markdown link</source>
        <translation>Markdown-Link kopiert</translation>
    </message>
    <message>
        <source>Picture %1</source>
        <translation>Bild %1</translation>
    </message>
    <message>
        <source>Saved “%1” to %2</source>
        <translation>„%1“ in „%2“ gespeichert</translation>
    </message>
    <message>
        <source>Couldn&apos;t save image</source>
        <translation>Bild konnte nicht gespeichert werden</translation>
    </message>
</context>
<context>
    <name>SmartActions</name>
    <message>
        <source>Clean whitespace</source>
        <translation>Leerraum bereinigen</translation>
    </message>
    <message>
        <source>Pretty-print JSON</source>
        <translation>JSON formatieren</translation>
    </message>
    <message>
        <source>Minify JSON</source>
        <translation>JSON verkleinern</translation>
    </message>
    <message>
        <source>Decode Base64</source>
        <translation>Base64 dekodieren</translation>
    </message>
    <message>
        <source>URL-decode</source>
        <translation>URL dekodieren</translation>
    </message>
    <message>
        <source>Convert to date</source>
        <translation>In Datum umwandeln</translation>
    </message>
    <message>
        <source>Decode JWT payload</source>
        <translation>JWT-Inhalt dekodieren</translation>
    </message>
    <message>
        <source>Slugify</source>
        <translation>In URL-Kurzform umwandeln</translation>
    </message>
    <message>
        <source>QR code</source>
        <translation>QR-Code</translation>
    </message>
    <message>
        <source>Open link</source>
        <translation>Link öffnen</translation>
    </message>
    <message>
        <source>Copy as Markdown</source>
        <translation>Als Markdown kopieren</translation>
    </message>
    <message>
        <source>Copy domain</source>
        <translation>Domain kopieren</translation>
    </message>
    <message>
        <source>Strip trackers</source>
        <translation>Tracker entfernen</translation>
    </message>
    <message>
        <source>Copy RGB</source>
        <translation>RGB kopieren</translation>
    </message>
    <message>
        <source>Copy HSL</source>
        <translation>HSL kopieren</translation>
    </message>
    <message>
        <source>Copy SwiftUI Color</source>
        <translation>SwiftUI-Farbe kopieren</translation>
    </message>
    <message>
        <source>Format</source>
        <translation>Formatieren</translation>
    </message>
    <message>
        <source>Copy fenced code</source>
        <translation>Als Codeblock kopieren</translation>
    </message>
    <message>
        <source>Minify</source>
        <translation>Verkleinern</translation>
    </message>
    <message>
        <source>Escape as string literal</source>
        <translation>Als Zeichenkette maskieren</translation>
    </message>
    <message>
        <source>Copy text (OCR)</source>
        <translation>Text kopieren (OCR)</translation>
    </message>
    <message>
        <source>Save to Desktop</source>
        <translation>Auf dem Schreibtisch speichern</translation>
    </message>
    <message>
        <source>Copy filename</source>
        <translation>Dateinamen kopieren</translation>
    </message>
    <message>
        <source>Copy path</source>
        <translation>Pfad kopieren</translation>
    </message>
    <message>
        <source>Copy shell-escaped path</source>
        <translation>Pfad für die Shell kopieren</translation>
    </message>
    <message>
        <source>Reveal in Finder</source>
        <translation>In Dateien zeigen</translation>
    </message>
    <message>
        <source>Minified · %1 → %2 chars</source>
        <translation>Verkleinert · %1 → %2 Zeichen</translation>
    </message>
    <message>
        <source>Decoded %1</source>
        <translation>Dekodiert: %1</translation>
    </message>
    <message>
        <source>Copied %1</source>
        <translation>Kopiert: %1</translation>
    </message>
    <message>
        <source>Generating QR …</source>
        <translation>QR-Code wird erzeugt …</translation>
    </message>
    <message>
        <source>Copied pretty JSON</source>
        <translation>Formatiertes JSON kopiert</translation>
    </message>
    <message>
        <source>Copied JWT payload</source>
        <translation>JWT-Inhalt kopiert</translation>
    </message>
    <message>
        <source>Cleaned %1</source>
        <translation>Bereinigt: %1</translation>
    </message>
    <message>
        <source>Removed tracking params</source>
        <translation>Tracking-Parameter entfernt</translation>
    </message>
    <message>
        <source>Opening %1 …</source>
        <translation>%1 wird geöffnet …</translation>
    </message>
    <message>
        <source>Fetching title …</source>
        <translation>Titel wird abgerufen …</translation>
    </message>
    <message>
        <source>Reading text …</source>
        <translation>Text wird gelesen …</translation>
    </message>
    <message>
        <source>Saved %1 to Desktop</source>
        <translation>%1 auf dem Schreibtisch gespeichert</translation>
    </message>
    <message>
        <source>Copied Color literal</source>
        <translation>Farbwert kopiert</translation>
    </message>
    <message>
        <source>Formatted · copied</source>
        <translation>Formatiert · kopiert</translation>
    </message>
    <message>
        <source>Copied fenced code block</source>
        <translation>Codeblock kopiert</translation>
    </message>
    <message>
        <source>Copied as string literal</source>
        <translation>Als Zeichenkette kopiert</translation>
    </message>
    <message>
        <source>Copied path</source>
        <translation>Pfad kopiert</translation>
    </message>
    <message>
        <source>Copied shell-safe path</source>
        <translation>Pfad für die Shell kopiert</translation>
    </message>
    <message>
        <source>Revealing in Finder …</source>
        <translation>Wird in Dateien gezeigt …</translation>
    </message>
</context>
<context>
    <name>Clipboard::SnapshotPasteboard</name>
    <message>
        <source>Copies are not recorded at the moment: the connection to the display was lost.</source>
        <translation>Kopien werden zurzeit nicht aufgezeichnet: Die Verbindung zur Anzeige ist abgerissen.</translation>
    </message>
</context>
<context>
    <name>SessionStatus</name>
    <message>
        <source>Have your desktop run this on a key of its own: tessaly toggle</source>
        <translation>Lassen Sie Ihren Desktop dies auf eine eigene Taste hin ausführen: tessaly toggle</translation>
    </message>
    <message>
        <source>There is no tray in this session.</source>
        <translation>In dieser Sitzung gibt es keinen Bereich für Symbole.</translation>
    </message>
    <message>
        <source>Start Tessaly in a session that offers it.</source>
        <translation>Starten Sie Tessaly in einer Sitzung, die sie bietet.</translation>
    </message>
    <message>
        <source>Choose an entry, then press the keys for pasting: it is on the clipboard.</source>
        <translation>Wählen Sie einen Eintrag und drücken Sie dann die Tasten zum Einfügen: Er ist in der Zwischenablage.</translation>
    </message>
    <message>
        <source>Make room on the disk, and see who owns the data folder.</source>
        <translation>Schaffen Sie Platz auf dem Datenträger und prüfen Sie, wem der Datenordner gehört.</translation>
    </message>
    <message>
        <source>It opens as soon as your keyring does.</source>
        <translation>Er öffnet sich, sobald Ihr Schlüsselbund es tut.</translation>
    </message>
    <message>
        <source>Use Linux 5.13 or newer, and install Tessaly whole.</source>
        <translation>Verwenden Sie Linux 5.13 oder neuer und installieren Sie Tessaly vollständig.</translation>
    </message>
</context>
<context>
    <name>WorkerCheck</name>
    <message>
        <source>tessaly-worker cannot be run.</source>
        <translation>tessaly-worker kann nicht ausgeführt werden.</translation>
    </message>
    <message>
        <source>tessaly-worker is not confined: %1.</source>
        <translation>tessaly-worker ist nicht eingesperrt: %1.</translation>
    </message>
</context>
<context>
    <name>Clipboard::ToastView</name>
    <message>
        <source>Notice</source>
        <translation>Mitteilung</translation>
    </message>
</context>
</TS>
