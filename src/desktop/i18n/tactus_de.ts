<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en_US">
<context>
    <name>BpmWindow</name>
    <message>
        <source>Undone: %1</source>
        <translation>Zurückgenommen: %1</translation>
    </message>
    <message>
        <source>Done again: %1</source>
        <translation>Wiederholt: %1</translation>
    </message>
    <message>
        <source>Tactus</source>
        <translation>Tactus</translation>
    </message>
    <message>
        <source>Files</source>
        <translation>Dateien</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>Hinzufügen</translation>
    </message>
    <message>
        <source>Add files and folders</source>
        <translation>Dateien und Ordner hinzufügen</translation>
    </message>
    <message>
        <source>Analyze</source>
        <translation>Analysieren</translation>
    </message>
    <message>
        <source>Analyze the files without a tempo</source>
        <translation>Dateien ohne Tempo analysieren</translation>
    </message>
    <message>
        <source>Analyze all files again</source>
        <translation>Alle Dateien neu analysieren</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Anhalten</translation>
    </message>
    <message>
        <source>Stop analyzing</source>
        <translation>Die Analyse anhalten</translation>
    </message>
    <message>
        <source>Open the guide</source>
        <translation>Die Anleitung öffnen</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Kopieren</translation>
    </message>
    <message>
        <source>Copy the selected rows</source>
        <translation>Die ausgewählten Zeilen kopieren</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Beenden</translation>
    </message>
    <message>
        <source>Quit Tactus</source>
        <translation>Tactus beenden</translation>
    </message>
    <message>
        <source>Select all</source>
        <translation>Alles auswählen</translation>
    </message>
    <message>
        <source>Toolbar</source>
        <translation>Werkzeugleiste</translation>
    </message>
    <message>
        <source>Tactus home page</source>
        <translation>Tactus-Startseite</translation>
    </message>
    <message>
        <source>Open the home page</source>
        <translation>Die Startseite öffnen</translation>
    </message>
    <message>
        <source>No program could be found to open %1.</source>
        <translation>Zum Öffnen von %1 wurde kein Programm gefunden.</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Analyze again</source>
        <translation>Neu analysieren</translation>
    </message>
    <message numerus="yes">
        <source>%Ln tempo(s) came with the files. Replace them?</source>
        <translation>
            <numerusform>%Ln Tempo stammt aus der Datei. Ersetzen?</numerusform>
            <numerusform>%Ln Tempi stammen aus den Dateien. Ersetzen?</numerusform>
        </translation>
    </message>
    <message>
        <source>Tactus did not find them; they may have been set by hand.</source>
        <translation>Tactus hat sie nicht gefunden; vielleicht wurden sie von Hand gesetzt.</translation>
    </message>
    <message>
        <source>MP3 files get the new tempo in their tags.</source>
        <translation>MP3-Dateien bekommen das neue Tempo in ihren Tag.</translation>
    </message>
    <message>
        <source>Analyze all again</source>
        <translation>Alle neu analysieren</translation>
    </message>
    <message>
        <source>&amp;Stop and close</source>
        <translation>&amp;Anhalten und schließen</translation>
    </message>
    <message>
        <source>&amp;Keep going</source>
        <translation>&amp;Weitermachen</translation>
    </message>
    <message>
        <source>Analyze all again …</source>
        <translation>Alle neu analysieren …</translation>
    </message>
    <message>
        <source>Select all rows</source>
        <translation>Alle Zeilen auswählen</translation>
    </message>
    <message>
        <source>Close window</source>
        <translation>Fenster schließen</translation>
    </message>
    <message>
        <source>Close the window</source>
        <translation>Das Fenster schließen</translation>
    </message>
    <message>
        <source>Sort by %1</source>
        <translation>Sortieren: %1</translation>
    </message>
    <message>
        <source>Menu</source>
        <translation>Menü</translation>
    </message>
    <message>
        <source>Everything else</source>
        <translation>Alles Weitere</translation>
    </message>
    <message>
        <source>Bring back</source>
        <translation>Zurückholen</translation>
    </message>
    <message>
        <source>Hide</source>
        <translation>Ausblenden</translation>
    </message>
    <message>
        <source>Hide the selected rows and leave them out</source>
        <translation>Die ausgewählten Zeilen ausblenden und auslassen</translation>
    </message>
    <message>
        <source>Bring back what was hidden last</source>
        <translation>Zurückholen, was zuletzt ausgeblendet wurde</translation>
    </message>
    <message>
        <source>Show the song</source>
        <translation>Lied zeigen</translation>
    </message>
    <message>
        <source>Show or hide the song of the selected row</source>
        <translation>Das Lied der ausgewählten Zeile zeigen oder verbergen</translation>
    </message>
    <message>
        <source>Table or song</source>
        <translation>Tabelle oder Lied</translation>
    </message>
    <message>
        <source>Go from the table to the song and back</source>
        <translation>Von der Tabelle zum Lied und zurück gehen</translation>
    </message>
    <message>
        <source>Preferences …</source>
        <translation>Einstellungen …</translation>
    </message>
    <message>
        <source>What is to be otherwise than at first</source>
        <translation>Was anders sein soll als zu Anfang</translation>
    </message>
    <message>
        <source>Add them</source>
        <translation>Hinzufügen</translation>
    </message>
    <message>
        <source>Guide</source>
        <translation>Anleitung</translation>
    </message>
    <message>
        <source>Keys …</source>
        <translation>Tasten …</translation>
    </message>
    <message>
        <source>Show every key</source>
        <translation>Alle Tasten zeigen</translation>
    </message>
    <message>
        <source>%1 – Tactus</source>
        <translation>%1 – Tactus</translation>
    </message>
    <message>
        <source>Tactus is done</source>
        <translation>Tactus ist fertig</translation>
    </message>
    <message>
        <source>Show</source>
        <translation>Zeigen</translation>
    </message>
    <message>
        <source>Folders that could not be read</source>
        <translation>Ordner, die nicht gelesen werden konnten</translation>
    </message>
    <message>
        <source>Folder</source>
        <translation>Ordner</translation>
    </message>
    <message>
        <source>First and last row</source>
        <translation>Erste und letzte Zeile</translation>
    </message>
    <message>
        <source>Filters</source>
        <translation>Filter</translation>
    </message>
    <message>
        <source>In the song: beat by beat</source>
        <translation>Im Lied: Schlag für Schlag</translation>
    </message>
    <message>
        <source>In the song: measure by measure</source>
        <translation>Im Lied: Takt für Takt</translation>
    </message>
    <message>
        <source>In the song: to its start and end</source>
        <translation>Im Lied: an den Anfang und an das Ende</translation>
    </message>
    <message>
        <source>In the song: play and pause</source>
        <translation>Im Lied: abspielen und anhalten</translation>
    </message>
    <message>
        <source>In the song: tap the tempo</source>
        <translation>Im Lied: das Tempo tippen</translation>
    </message>
    <message>
        <source>In the song: take the tapped tempo</source>
        <translation>Im Lied: das getippte Tempo übernehmen</translation>
    </message>
    <message>
        <source>Keys</source>
        <translation>Tasten</translation>
    </message>
    <message>
        <source>Key</source>
        <translation>Taste</translation>
    </message>
    <message>
        <source>Does</source>
        <translation>Wirkung</translation>
    </message>
    <message>
        <source>Type the tempo</source>
        <translation>Tempo eintippen</translation>
    </message>
    <message>
        <source>Type the tempo of the row</source>
        <translation>Das Tempo der Zeile eintippen</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>Rückgängig</translation>
    </message>
    <message>
        <source>Take back the last step</source>
        <translation>Den letzten Schritt zurücknehmen</translation>
    </message>
    <message>
        <source>Redo</source>
        <translation>Wiederholen</translation>
    </message>
    <message>
        <source>Do again what was taken back</source>
        <translation>Zurückgenommenes wiederholen</translation>
    </message>
    <message>
        <source>Correct the tempo</source>
        <translation>Tempo berichtigen</translation>
    </message>
    <message numerus="yes">
        <source>hiding %Ln file(s)</source>
        <translation>
            <numerusform>%Ln Datei ausgeblendet</numerusform>
            <numerusform>%Ln Dateien ausgeblendet</numerusform>
        </translation>
    </message>
    <message>
        <source>Undo: %1</source>
        <translation>Rückgängig: %1</translation>
    </message>
    <message>
        <source>Redo: %1</source>
        <translation>Wiederholen: %1</translation>
    </message>
    <message>
        <source>Filter</source>
        <translation>Filter</translation>
    </message>
    <message>
        <source>Find rows by words and more</source>
        <translation>Zeilen nach Wörtern und mehr finden</translation>
    </message>
    <message>
        <source>Next reading of the tempo</source>
        <translation>Nächste Lesart des Tempos</translation>
    </message>
    <message>
        <source>Take the next likely tempo of the row</source>
        <translation>Das nächste wahrscheinliche Tempo der Zeile nehmen</translation>
    </message>
    <message>
        <source>Export …</source>
        <translation>Exportieren …</translation>
    </message>
    <message>
        <source>Write the rows into a file</source>
        <translation>Die Zeilen in eine Datei schreiben</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Tempo %1</source>
        <translation>Tempo %1</translation>
    </message>
</context>
<context>
    <name>CAccentsView</name>
    <message>
        <source>Accents of a measure&apos;s half beats, in percent: %1</source>
        <translation>Betonung der halben Schläge eines Taktes, in Prozent: %1</translation>
    </message>
</context>
<context>
    <name>CChipsLine</name>
    <message>
        <source>Filters</source>
        <translation>Filter</translation>
    </message>
    <message>
        <source>All %1</source>
        <translation>Alle %1</translation>
    </message>
    <message>
        <source>To do %1</source>
        <translation>Zu tun %1</translation>
    </message>
    <message>
        <source>Problems %1</source>
        <translation>Probleme %1</translation>
    </message>
    <message>
        <source>Filter</source>
        <translation>Filter</translation>
    </message>
    <message>
        <source>Words of title, artist or file; 120-130; key:8A; state:problem</source>
        <translation>Wörter aus Titel, Interpret oder Datei; 120-130; key:8A; state:problem</translation>
    </message>
    <message>
        <source>To review %1</source>
        <translation>Zu prüfen %1</translation>
    </message>
    <message>
        <source>By hand %1</source>
        <translation>Von Hand %1</translation>
    </message>
</context>
<context>
    <name>CColumnsMenu</name>
    <message>
        <source>Columns</source>
        <translation>Spalten</translation>
    </message>
    <message>
        <source>As at first</source>
        <translation>Wie am Anfang</translation>
    </message>
</context>
<context>
    <name>CEmptyHint</name>
    <message>
        <source>Drop files and folders here, or</source>
        <translation>Dateien und Ordner hierher ziehen oder</translation>
    </message>
    <message>
        <source>Add music …</source>
        <translation>Musik hinzufügen …</translation>
    </message>
    <message>
        <source>Nothing here</source>
        <translation>Hier ist nichts</translation>
    </message>
    <message>
        <source>Finds the tempo of music and writes it into MP3 tags</source>
        <translation>Findet das Tempo von Musik und schreibt es in die Tags von MP3-Dateien</translation>
    </message>
    <message>
        <source>Only look, write nothing …</source>
        <translation>Nur ansehen, nichts schreiben …</translation>
    </message>
    <message>
        <source>Add music, and change no file until the window is closed</source>
        <translation>Musik hinzufügen und keine Datei ändern, bis das Fenster geschlossen wird</translation>
    </message>
    <message>
        <source>every kind of music file</source>
        <translation>alle Arten von Musikdateien</translation>
    </message>
    <message>
        <source>wav, mp3, aiff, aif, caf and m4a</source>
        <translation>wav, mp3, aiff, aif, caf und m4a</translation>
    </message>
    <message>
        <source>only mp3 files are written</source>
        <translation>nur mp3-Dateien werden geschrieben</translation>
    </message>
    <message>
        <source>Finds the tempo of music</source>
        <translation>Findet das Tempo von Musik</translation>
    </message>
    <message>
        <source>nothing is written</source>
        <translation>nichts wird geschrieben</translation>
    </message>
    <message>
        <source>Finds the tempo of music and writes it into the tags</source>
        <translation>Findet das Tempo von Musik und schreibt es in die Tags</translation>
    </message>
    <message>
        <source>other kinds than mp3 are written too</source>
        <translation>auch andere Arten als mp3 werden geschrieben</translation>
    </message>
</context>
<context>
    <name>CExportDialog</name>
    <message>
        <source>Export</source>
        <translation>Exportieren</translation>
    </message>
    <message numerus="yes">
        <source>%Ln selected row(s)</source>
        <translation>
            <numerusform>%Ln ausgewählte Zeile</numerusform>
            <numerusform>%Ln ausgewählte Zeilen</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>All %Ln row(s)</source>
        <translation>
            <numerusform>%Ln Zeile</numerusform>
            <numerusform>Alle %Ln Zeilen</numerusform>
        </translation>
    </message>
    <message>
        <source>Table, commas between (csv)</source>
        <translation>Tabelle mit Kommas (csv)</translation>
    </message>
    <message>
        <source>Table, tabs between (tsv)</source>
        <translation>Tabelle mit Tabulatoren (tsv)</translation>
    </message>
    <message>
        <source>JSON, one object a line (jsonl)</source>
        <translation>JSON, ein Objekt je Zeile (jsonl)</translation>
    </message>
    <message>
        <source>&amp;Rows:</source>
        <translation>&amp;Zeilen:</translation>
    </message>
    <message>
        <source>&amp;Format:</source>
        <translation>&amp;Format:</translation>
    </message>
    <message>
        <source>The first lines</source>
        <translation>Die ersten Zeilen</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Save as …</source>
        <translation>Speichern unter …</translation>
    </message>
    <message>
        <source>Save as</source>
        <translation>Speichern unter</translation>
    </message>
    <message>
        <source>tempos</source>
        <translation>tempi</translation>
    </message>
    <message numerus="yes">
        <source>%Ln row(s) exported to “%1”.</source>
        <translation>
            <numerusform>%Ln Zeile nach „%1“ exportiert.</numerusform>
            <numerusform>%Ln Zeilen nach „%1“ exportiert.</numerusform>
        </translation>
    </message>
    <message>
        <source>“%1” could not be written: %2</source>
        <translation>„%1“ konnte nicht geschrieben werden: %2</translation>
    </message>
    <message>
        <source>Beat grids for rekordbox (xml)</source>
        <translation>Schlagraster für rekordbox (xml)</translation>
    </message>
    <message>
        <source>Beats as labels for Audacity (txt)</source>
        <translation>Schläge als Marken für Audacity (txt)</translation>
    </message>
    <message>
        <source>Tempo map for sequencers (mid)</source>
        <translation>Tempospur für Sequenzer (mid)</translation>
    </message>
    <message>
        <source>Annotations for music research (jams)</source>
        <translation>Annotationen für die Musikforschung (jams)</translation>
    </message>
    <message>
        <source>All that is known, as JSON (jsonl)</source>
        <translation>Alles, was bekannt ist, als JSON (jsonl)</translation>
    </message>
    <message>
        <source>Playlist (m3u8)</source>
        <translation>Wiedergabeliste (m3u8)</translation>
    </message>
    <message>
        <source>Drawing of the song (svg)</source>
        <translation>Zeichnung des Lieds (svg)</translation>
    </message>
    <message>
        <source>Save in …</source>
        <translation>Speichern in …</translation>
    </message>
    <message>
        <source>Folder for the files</source>
        <translation>Ordner für die Dateien</translation>
    </message>
    <message>
        <source>Finding beat grids: %L1 of %L2 …</source>
        <translation>Suche Schlagraster: %L1 von %L2 …</translation>
    </message>
    <message>
        <source>Looking for beat grids …</source>
        <translation>Sehe nach Schlagrastern …</translation>
    </message>
    <message numerus="yes">
        <source>%Ln of %1 row(s) can&apos;t be heard and will be missing.</source>
        <translation>
            <numerusform>%Ln von %1 Zeilen lässt sich nicht hören und wird fehlen.</numerusform>
            <numerusform>%Ln von %1 Zeilen lassen sich nicht hören und werden fehlen.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln of %1 row(s) have no beat grid yet and will be missing.</source>
        <translation>
            <numerusform>%Ln von %1 Zeilen hat noch kein Schlagraster und wird fehlen.</numerusform>
            <numerusform>%Ln von %1 Zeilen haben noch kein Schlagraster und werden fehlen.</numerusform>
        </translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Anhalten</translation>
    </message>
    <message>
        <source>This song has no beat grid yet.</source>
        <translation>Dieses Lied hat noch kein Schlagraster.</translation>
    </message>
    <message>
        <source>This song can&apos;t be heard.</source>
        <translation>Dieses Lied lässt sich nicht hören.</translation>
    </message>
    <message>
        <source>Find beat grids</source>
        <translation>Schlagraster suchen</translation>
    </message>
    <message>
        <source>What goes into this file is no text.</source>
        <translation>Was in diese Datei kommt, ist kein Text.</translation>
    </message>
    <message>
        <source>There are no beats to be written.</source>
        <translation>Es gibt keine Schläge, die geschrieben werden könnten.</translation>
    </message>
    <message numerus="yes">
        <source>%Ln song(s) exported to “%1”.</source>
        <translation>
            <numerusform>%Ln Lied nach „%1“ exportiert.</numerusform>
            <numerusform>%Ln Lieder nach „%1“ exportiert.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln row(s) left out.</source>
        <translation>
            <numerusform>%Ln Zeile fehlt darin.</numerusform>
            <numerusform>%Ln Zeilen fehlen darin.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>CFileTableModel</name>
    <message>
        <source>Title</source>
        <translation>Titel</translation>
    </message>
    <message>
        <source>Artist</source>
        <translation>Interpret</translation>
    </message>
    <message>
        <source>Tempo</source>
        <translation>Tempo</translation>
    </message>
    <message>
        <source>reading</source>
        <translation>liest</translation>
    </message>
    <message>
        <source>still to be analyzed again</source>
        <translation>noch neu zu analysieren</translation>
    </message>
    <message>
        <source>This tempo is still to be analyzed again.</source>
        <translation>Dieses Tempo ist noch neu zu analysieren.</translation>
    </message>
    <message>
        <source>set by hand</source>
        <translation>von Hand gesetzt</translation>
    </message>
    <message>
        <source>not in the file</source>
        <translation>nicht in der Datei</translation>
    </message>
    <message>
        <source>This tempo was set by hand.</source>
        <translation>Dieses Tempo wurde von Hand gesetzt.</translation>
    </message>
    <message>
        <source>The file doesn&apos;t have it in its tag.</source>
        <translation>Im Tag der Datei steht es nicht.</translation>
    </message>
</context>
<context>
    <name>CListDialog</name>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
</context>
<context>
    <name>COpenPanel</name>
    <message>
        <source>Add files and folders</source>
        <translation>Dateien und Ordner hinzufügen</translation>
    </message>
    <message>
        <source>Music files and folders</source>
        <translation>Musikdateien und Ordner</translation>
    </message>
    <message>
        <source>Add this folder</source>
        <translation>Diesen Ordner</translation>
    </message>
    <message>
        <source>Add the folder that is open here, with everything below it</source>
        <translation>Den hier geöffneten Ordner mit allem darin hinzufügen</translation>
    </message>
    <message>
        <source>There is no “%1” here.</source>
        <translation>Hier gibt es kein „%1“.</translation>
    </message>
    <message>
        <source>“%1” is neither a folder nor a music file of a kind that is read.</source>
        <translation>„%1“ ist weder ein Ordner noch eine Musikdatei, die gelesen werden kann.</translation>
    </message>
    <message>
        <source>“%1” can&apos;t be chosen here, only wav, mp3 and aiff files and folders. Other kinds come in with their folder, or when they are dropped on the window.</source>
        <translation>„%1“ lässt sich hier nicht wählen, nur wav-, mp3- und aiff-Dateien und Ordner. Andere Arten kommen mit ihrem Ordner herein, oder wenn sie auf das Fenster gezogen werden.</translation>
    </message>
</context>
<context>
    <name>CPreferencesDialog</name>
    <message>
        <source>Preferences</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Files</source>
        <translation>Dateien</translation>
    </message>
    <message>
        <source>Add &amp;other kinds too: flac, ogg, opus, wma and all that can be read</source>
        <translation>Auch &amp;andere Arten hinzufügen: flac, ogg, opus, wma und alle lesbaren</translation>
    </message>
    <message>
        <source>Tempo, from the next analysis on</source>
        <translation>Tempo, ab der nächsten Analyse</translation>
    </message>
    <message>
        <source>&amp;Decimals, in the table and in tags:</source>
        <translation>&amp;Nachkommastellen, in der Tabelle und im Tag:</translation>
    </message>
    <message>
        <source>Take the &amp;likeliest reading, such as half or double</source>
        <translation>Die &amp;wahrscheinlichste Lesart nehmen, etwa halb oder doppelt</translation>
    </message>
    <message>
        <source>Where there is no tempo, show &amp;zero, and store it when there is no beat</source>
        <translation>Wo kein Tempo ist, N&amp;ull anzeigen, und speichern, wenn es keinen Schlag gibt</translation>
    </message>
    <message>
        <source>Halve or double into this &amp;range:</source>
        <translation>In diesen &amp;Bereich halbieren oder verdoppeln:</translation>
    </message>
    <message>
        <source>Slowest tempo</source>
        <translation>Langsamstes Tempo</translation>
    </message>
    <message>
        <source>Fastest tempo</source>
        <translation>Schnellstes Tempo</translation>
    </message>
    <message>
        <source>Tags</source>
        <translation>Tags</translation>
    </message>
    <message>
        <source>Only &amp;look, write nothing</source>
        <translation>Nur an&amp;sehen, nichts schreiben</translation>
    </message>
    <message>
        <source>&amp;Write other kinds than MP3 too, where that can be done</source>
        <translation>Auch andere Arten als MP3 s&amp;chreiben, wo das geht</translation>
    </message>
    <message>
        <source>&amp;Keep the time of a file&apos;s last change</source>
        <translation>Die &amp;Zeit der letzten Änderung einer Datei behalten</translation>
    </message>
    <message>
        <source>Window</source>
        <translation>Fenster</translation>
    </message>
    <message>
        <source>Re&amp;member its size and columns</source>
        <translation>Größe und Spalten &amp;merken</translation>
    </message>
    <message>
        <source>Nothing is stored: everything is as it came.</source>
        <translation>Nichts ist gespeichert: Alles ist wie am Anfang.</translation>
    </message>
    <message>
        <source>Stored in %1:</source>
        <translation>Gespeichert in %1:</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Restore defaults</source>
        <translation>Zurücksetzen</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
</context>
<context>
    <name>CSongPane</name>
    <message>
        <source>Song</source>
        <translation>Lied</translation>
    </message>
    <message>
        <source>Whole song</source>
        <translation>Das ganze Lied</translation>
    </message>
    <message>
        <source>Some measures</source>
        <translation>Einige Takte</translation>
    </message>
    <message>
        <source>Accents A</source>
        <translation>Betonung A</translation>
    </message>
    <message>
        <source>B</source>
        <translation>B</translation>
    </message>
    <message>
        <source>Select a song to see it here.</source>
        <translation>Wählen Sie ein Lied aus, um es hier zu sehen.</translation>
    </message>
    <message>
        <source>Reading “%1” …</source>
        <translation>„%1“ wird gelesen …</translation>
    </message>
    <message>
        <source>There is no sound in it.</source>
        <translation>Es ist kein Ton darin.</translation>
    </message>
    <message>
        <source>%1 – %2</source>
        <translation>%1 – %2</translation>
    </message>
    <message>
        <source>There is no device to play on.</source>
        <translation>Es gibt kein Gerät zum Abspielen.</translation>
    </message>
    <message>
        <source>Playing needs the package tactus-desktop-sound.</source>
        <translation>Zum Abspielen fehlt das Paket tactus-desktop-sound.</translation>
    </message>
    <message>
        <source>Play with clicks on the beats (%1)</source>
        <translation>Mit Klicks auf den Schlägen abspielen (%1)</translation>
    </message>
    <message>
        <source>Stop playing</source>
        <translation>Abspielen anhalten</translation>
    </message>
    <message>
        <source>Play</source>
        <translation>Abspielen</translation>
    </message>
</context>
<context>
    <name>CSoundControls</name>
    <message>
        <source>Click</source>
        <translation>Klick</translation>
    </message>
    <message>
        <source>Music</source>
        <translation>Musik</translation>
    </message>
    <message>
        <source>Loop</source>
        <translation>Schleife</translation>
    </message>
    <message>
        <source>Measures that are played again and again</source>
        <translation>Takte, die immer wieder gespielt werden</translation>
    </message>
    <message>
        <source>No loop</source>
        <translation>Keine Schleife</translation>
    </message>
    <message numerus="yes">
        <source>Loop of %Ln</source>
        <translation>
            <numerusform>Schleife: %Ln Takt</numerusform>
            <numerusform>Schleife: %Ln Takte</numerusform>
        </translation>
    </message>
    <message>
        <source>Level of %1</source>
        <translation>Pegel: %1</translation>
    </message>
</context>
<context>
    <name>CStatusLine</name>
    <message>
        <source>Status bar</source>
        <translation>Statusleiste</translation>
    </message>
    <message>
        <source>Overall progress</source>
        <translation>Gesamtfortschritt</translation>
    </message>
    <message>
        <source>Only looking: nothing is written</source>
        <translation>Nur ansehen: nichts wird geschrieben</translation>
    </message>
</context>
<context>
    <name>CTempoDelegate</name>
    <message>
        <source>Tempo</source>
        <translation>Tempo</translation>
    </message>
    <message>
        <source>A tempo is a number from %1 to %2.</source>
        <translation>Ein Tempo ist eine Zahl von %1 bis %2.</translation>
    </message>
</context>
<context>
    <name>CTempoLine</name>
    <message>
        <source>Tap</source>
        <translation>Tippen</translation>
    </message>
    <message>
        <source>Tap the tempo (T); Enter takes it</source>
        <translation>Das Tempo tippen (T); Eingabe übernimmt es</translation>
    </message>
    <message numerus="yes">
        <source>%Ln tap(s) …</source>
        <translation>
            <numerusform>%Ln Schlag …</numerusform>
            <numerusform>%Ln Schläge …</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln tap(s): %1 ± %2, Enter takes %3</source>
        <translation>
            <numerusform>%Ln Schlag: %1 ± %2, Eingabe übernimmt %3</numerusform>
            <numerusform>%Ln Schläge: %1 ± %2, Eingabe übernimmt %3</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>CorrectionTexts</name>
    <message>
        <source>its tag says something else by now</source>
        <translation>in ihrem Tag steht inzwischen etwas anderes</translation>
    </message>
    <message>
        <source>the file is gone</source>
        <translation>die Datei ist weg</translation>
    </message>
    <message>
        <source>its tag can&apos;t be read</source>
        <translation>ihr Tag ist nicht lesbar</translation>
    </message>
    <message numerus="yes">
        <source>%Ln stored tempo(s)</source>
        <translation>
            <numerusform>%Ln gespeichertes Tempo</numerusform>
            <numerusform>%Ln gespeicherte Tempi</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1 on %Ln file(s)</source>
        <translation>
            <numerusform>%1 bei %Ln Datei</numerusform>
            <numerusform>%1 bei %Ln Dateien</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>tempo of %Ln file(s)</source>
        <translation>
            <numerusform>Tempo von %Ln Datei</numerusform>
            <numerusform>Tempo von %Ln Dateien</numerusform>
        </translation>
    </message>
    <message>
        <source>No row is selected.</source>
        <translation>Keine Zeile ist ausgewählt.</translation>
    </message>
    <message>
        <source>The file is being analyzed.</source>
        <translation>Die Datei wird gerade analysiert.</translation>
    </message>
    <message>
        <source>There is no tempo yet.</source>
        <translation>Es gibt noch kein Tempo.</translation>
    </message>
    <message>
        <source>A tempo would be below %1.</source>
        <translation>Ein Tempo läge unter %1.</translation>
    </message>
    <message>
        <source>A tempo would be above %1.</source>
        <translation>Ein Tempo läge über %1.</translation>
    </message>
    <message>
        <source>“%1” was left as it is: %2.</source>
        <translation>„%1“ blieb, wie sie ist: %2.</translation>
    </message>
    <message numerus="yes">
        <source>%Ln file(s) were left as they are, the first of them “%1”: %2.</source>
        <translation>
            <numerusform>%Ln Datei blieb, wie sie ist, „%1“: %2.</numerusform>
            <numerusform>%Ln Dateien blieben, wie sie sind, die erste davon „%1“: %2.</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 %</source>
        <translation>%1 %</translation>
    </message>
</context>
<context>
    <name>MoreColumns</name>
    <message>
        <source>reading</source>
        <translation>liest</translation>
    </message>
    <message>
        <source>analyzing</source>
        <translation>läuft</translation>
    </message>
    <message>
        <source>to do</source>
        <translation>zu tun</translation>
    </message>
    <message>
        <source>by hand</source>
        <translation>von Hand</translation>
    </message>
    <message>
        <source>from the tag</source>
        <translation>aus dem Tag</translation>
    </message>
    <message>
        <source>no beat</source>
        <translation>kein Schlag</translation>
    </message>
    <message>
        <source>failed</source>
        <translation>misslungen</translation>
    </message>
    <message>
        <source>damaged</source>
        <translation>beschädigt</translation>
    </message>
    <message>
        <source>to review</source>
        <translation>zu prüfen</translation>
    </message>
    <message>
        <source>analyzed</source>
        <translation>analysiert</translation>
    </message>
    <message>
        <source>yes</source>
        <translation>ja</translation>
    </message>
    <message>
        <source>no</source>
        <translation>nein</translation>
    </message>
    <message>
        <source>Or</source>
        <comment>another tempo</comment>
        <translation>Oder</translation>
    </message>
    <message>
        <source>Other reading</source>
        <translation>Andere Lesart</translation>
    </message>
    <message>
        <source>Key</source>
        <comment>of music</comment>
        <translation>Tonart</translation>
    </message>
    <message>
        <source>Length</source>
        <translation>Länge</translation>
    </message>
    <message>
        <source>State</source>
        <translation>Zustand</translation>
    </message>
    <message>
        <source>Kind</source>
        <translation>Art</translation>
    </message>
    <message>
        <source>Folder</source>
        <translation>Ordner</translation>
    </message>
    <message>
        <source>Stored</source>
        <translation>Gespeichert</translation>
    </message>
</context>
<context>
    <name>PaneTexts</name>
    <message>
        <source>in the tag: %1</source>
        <translation>im Tag: %1</translation>
    </message>
    <message>
        <source>no tempo in the tag</source>
        <translation>kein Tempo im Tag</translation>
    </message>
    <message>
        <source>C minor</source>
        <translation>c-Moll</translation>
    </message>
    <message>
        <source>C♯ minor</source>
        <translation>cis-Moll</translation>
    </message>
    <message>
        <source>D minor</source>
        <translation>d-Moll</translation>
    </message>
    <message>
        <source>E♭ minor</source>
        <translation>es-Moll</translation>
    </message>
    <message>
        <source>E minor</source>
        <translation>e-Moll</translation>
    </message>
    <message>
        <source>F minor</source>
        <translation>f-Moll</translation>
    </message>
    <message>
        <source>F♯ minor</source>
        <translation>fis-Moll</translation>
    </message>
    <message>
        <source>G minor</source>
        <translation>g-Moll</translation>
    </message>
    <message>
        <source>G♯ minor</source>
        <translation>gis-Moll</translation>
    </message>
    <message>
        <source>A minor</source>
        <translation>a-Moll</translation>
    </message>
    <message>
        <source>B♭ minor</source>
        <translation>b-Moll</translation>
    </message>
    <message>
        <source>B minor</source>
        <translation>h-Moll</translation>
    </message>
    <message>
        <source>C major</source>
        <translation>C-Dur</translation>
    </message>
    <message>
        <source>D♭ major</source>
        <translation>Des-Dur</translation>
    </message>
    <message>
        <source>D major</source>
        <translation>D-Dur</translation>
    </message>
    <message>
        <source>E♭ major</source>
        <translation>Es-Dur</translation>
    </message>
    <message>
        <source>E major</source>
        <translation>E-Dur</translation>
    </message>
    <message>
        <source>F major</source>
        <translation>F-Dur</translation>
    </message>
    <message>
        <source>F♯ major</source>
        <translation>Fis-Dur</translation>
    </message>
    <message>
        <source>G major</source>
        <translation>G-Dur</translation>
    </message>
    <message>
        <source>A♭ major</source>
        <translation>As-Dur</translation>
    </message>
    <message>
        <source>A major</source>
        <translation>A-Dur</translation>
    </message>
    <message>
        <source>B♭ major</source>
        <translation>B-Dur</translation>
    </message>
    <message>
        <source>B major</source>
        <translation>H-Dur</translation>
    </message>
    <message>
        <source>%1 BPM found</source>
        <translation>%1 BPM gefunden</translation>
    </message>
    <message>
        <source>measure %L1, beat %L2</source>
        <translation>Takt %L1, Schlag %L2</translation>
    </message>
    <message>
        <source>No beat was found.</source>
        <translation>Es wurde kein Schlag gefunden.</translation>
    </message>
    <message numerus="yes">
        <source>%Ln measure(s)</source>
        <translation>
            <numerusform>%Ln Takt</numerusform>
            <numerusform>%Ln Takte</numerusform>
        </translation>
    </message>
    <message>
        <source>The intro ends at %1.</source>
        <translation>Die Einleitung endet bei %1.</translation>
    </message>
    <message>
        <source>The outro starts at %1.</source>
        <translation>Der Schluss beginnt bei %1.</translation>
    </message>
    <message numerus="yes">
        <source>%Ln mix point(s) into the song: %1.</source>
        <translation>
            <numerusform>%Ln Mischpunkt in das Lied hinein: %1.</numerusform>
            <numerusform>%Ln Mischpunkte in das Lied hinein: %1.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln mix point(s) out of it: %1.</source>
        <translation>
            <numerusform>%Ln Mischpunkt aus ihm heraus: %1.</numerusform>
            <numerusform>%Ln Mischpunkte aus ihm heraus: %1.</numerusform>
        </translation>
    </message>
    <message>
        <source>The song before fades out from %1 to %2.</source>
        <translation>Das Lied davor wird von %1 bis %2 ausgeblendet.</translation>
    </message>
    <message>
        <source>Accents A, in percent for each half beat: %1.</source>
        <translation>Betonung A, in Prozent je halbem Schlag: %1.</translation>
    </message>
    <message>
        <source>Accents B: %1.</source>
        <translation>Betonung B: %1.</translation>
    </message>
    <message>
        <source>%1 %L2 kbit/s</source>
        <translation>%1 %L2 kbit/s</translation>
    </message>
</context>
<context>
    <name>StatusTexts</name>
    <message>
        <source>Reading “%1”</source>
        <translation>„%1“ wird gelesen</translation>
    </message>
    <message>
        <source>Analyzing “%1”</source>
        <translation>„%1“ wird analysiert</translation>
    </message>
    <message>
        <source>Stopping …</source>
        <translation>Wird angehalten …</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation>%1 von %2</translation>
    </message>
    <message numerus="yes">
        <source>Adding files … %Ln so far</source>
        <translation>
            <numerusform>Dateien werden hinzugefügt … bisher %Ln</numerusform>
            <numerusform>Dateien werden hinzugefügt … bisher %Ln</numerusform>
        </translation>
    </message>
    <message>
        <source>No files</source>
        <translation>Keine Dateien</translation>
    </message>
    <message numerus="yes">
        <source>%Ln file(s)</source>
        <translation>
            <numerusform>%Ln Datei</numerusform>
            <numerusform>%Ln Dateien</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln to do</source>
        <translation>
            <numerusform>%Ln zu tun</numerusform>
            <numerusform>%Ln zu tun</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln problem(s)</source>
        <translation>
            <numerusform>%Ln Problem</numerusform>
            <numerusform>%Ln Probleme</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln already in the list</source>
        <translation>
            <numerusform>%Ln schon in der Liste</numerusform>
            <numerusform>%Ln schon in der Liste</numerusform>
        </translation>
    </message>
    <message>
        <source>Nothing added: %1.</source>
        <translation>Nichts hinzugefügt: %1.</translation>
    </message>
    <message numerus="yes">
        <source>%Ln added, %1.</source>
        <translation>
            <numerusform>%Ln hinzugefügt, %1.</numerusform>
            <numerusform>%Ln hinzugefügt, %1.</numerusform>
        </translation>
    </message>
    <message>
        <source>Nothing added: no music in “%1”.</source>
        <translation>Nichts hinzugefügt: keine Musik in „%1“.</translation>
    </message>
    <message>
        <source>Nothing added: no music in these folders.</source>
        <translation>Nichts hinzugefügt: keine Musik in diesen Ordnern.</translation>
    </message>
    <message>
        <source>Nothing added: no music in “%1” (%2).</source>
        <translation>Nichts hinzugefügt: keine Musik in „%1“ (%2).</translation>
    </message>
    <message>
        <source>Nothing added: no music in these folders (%1).</source>
        <translation>Nichts hinzugefügt: keine Musik in diesen Ordnern (%1).</translation>
    </message>
    <message numerus="yes">
        <source>Still working on %Ln file(s).</source>
        <translation>
            <numerusform>%Ln Datei ist noch in Arbeit.</numerusform>
            <numerusform>%Ln Dateien sind noch in Arbeit.</numerusform>
        </translation>
    </message>
    <message>
        <source>The folder “%1” could not be read.</source>
        <translation>Der Ordner „%1“ konnte nicht gelesen werden.</translation>
    </message>
    <message numerus="yes">
        <source>%Ln folder(s) could not be read, the last of them “%1”.</source>
        <translation>
            <numerusform>%Ln Ordner konnte nicht gelesen werden, zuletzt „%1“.</numerusform>
            <numerusform>%Ln Ordner konnten nicht gelesen werden, zuletzt „%1“.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln file(s) hidden and left out. Nothing was deleted.</source>
        <translation>
            <numerusform>%Ln Datei ausgeblendet und ausgelassen. Gelöscht wurde nichts.</numerusform>
            <numerusform>%Ln Dateien ausgeblendet und ausgelassen. Gelöscht wurde nichts.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln file(s) of other kinds were left out (%1).</source>
        <translation>
            <numerusform>%Ln Datei einer anderen Art wurde ausgelassen (%1).</numerusform>
            <numerusform>%Ln Dateien anderer Arten wurden ausgelassen (%1).</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 s</source>
        <translation>%1 s</translation>
    </message>
    <message>
        <source>%1 min %2 s</source>
        <translation>%1 min %2 s</translation>
    </message>
    <message>
        <source>%1 h %2 min</source>
        <translation>%1 h %2 min</translation>
    </message>
    <message numerus="yes">
        <source>%Ln analyzed in %1</source>
        <translation>
            <numerusform>%Ln in %1 analysiert</numerusform>
            <numerusform>%Ln in %1 analysiert</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln stored</source>
        <translation>
            <numerusform>%Ln gespeichert</numerusform>
            <numerusform>%Ln gespeichert</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Texts</name>
    <message>
        <source>it is a folder, not a file</source>
        <translation>es ist ein Ordner, keine Datei</translation>
    </message>
    <message>
        <source>it is not a regular file</source>
        <translation>es ist keine gewöhnliche Datei</translation>
    </message>
    <message>
        <source>the file is empty</source>
        <translation>die Datei ist leer</translation>
    </message>
    <message>
        <source>the file vanished while it was read</source>
        <translation>die Datei ist beim Lesen verschwunden</translation>
    </message>
    <message>
        <source>the file changed while it was read</source>
        <translation>die Datei hat sich beim Lesen geändert</translation>
    </message>
    <message>
        <source>it is not an audio file that can be read</source>
        <translation>es ist keine lesbare Audiodatei</translation>
    </message>
    <message>
        <source>files of its kind aren&apos;t read</source>
        <translation>Dateien dieser Art werden nicht gelesen</translation>
    </message>
    <message>
        <source>it is an MP3 of free format, which isn&apos;t read</source>
        <translation>es ist eine MP3-Datei im freien Format, das nicht gelesen wird</translation>
    </message>
    <message>
        <source>the file is damaged or incomplete</source>
        <translation>die Datei ist beschädigt oder unvollständig</translation>
    </message>
    <message>
        <source>the file holds no audio</source>
        <translation>die Datei enthält keinen Ton</translation>
    </message>
    <message>
        <source>the file is protected</source>
        <translation>die Datei ist kopiergeschützt</translation>
    </message>
    <message>
        <source>its kind of audio can&apos;t be decoded</source>
        <translation>diese Art von Audiodaten lässt sich nicht dekodieren</translation>
    </message>
    <message>
        <source>its audio can&apos;t be decoded</source>
        <translation>die Audiodaten lassen sich nicht dekodieren</translation>
    </message>
    <message>
        <source>its audio can&apos;t be mixed down</source>
        <translation>die Audiodaten lassen sich nicht zusammenmischen</translation>
    </message>
    <message>
        <source>its sample rate can&apos;t be worked with</source>
        <translation>die Abtastrate ist nicht verwendbar</translation>
    </message>
    <message>
        <source>the file is too long</source>
        <translation>die Datei ist zu lang</translation>
    </message>
    <message>
        <source>there is not enough memory for it</source>
        <translation>der Speicher reicht dafür nicht</translation>
    </message>
    <message>
        <source>the file gave no audio for too long</source>
        <translation>die Datei lieferte zu lange keinen Ton</translation>
    </message>
    <message>
        <source>the analysis was stopped</source>
        <translation>die Analyse wurde angehalten</translation>
    </message>
    <message>
        <source>no beat was found in it</source>
        <translation>es wurde kein Schlag gefunden</translation>
    </message>
    <message>
        <source>no thread could be started</source>
        <translation>es konnte kein Thread gestartet werden</translation>
    </message>
    <message>
        <source>there is not enough memory for the analysis</source>
        <translation>der Speicher reicht für die Analyse nicht</translation>
    </message>
    <message>
        <source>the file is damaged, %1 of %2 packets can&apos;t be decoded</source>
        <translation>die Datei ist beschädigt, %1 von %2 Paketen lassen sich nicht dekodieren</translation>
    </message>
    <message>
        <source>the file ends early, after %1 of %2 seconds</source>
        <translation>die Datei endet zu früh, nach %1 von %2 Sekunden</translation>
    </message>
    <message>
        <source>the file breaks off in the middle of a frame</source>
        <translation>die Datei bricht mitten in einem Frame ab</translation>
    </message>
    <message>
        <source>%1, and it ends early, after %2 of %3 seconds</source>
        <translation>%1, und sie endet zu früh, nach %2 von %3 Sekunden</translation>
    </message>
    <message>
        <source>%1, and it breaks off</source>
        <translation>%1, und sie bricht ab</translation>
    </message>
    <message>
        <source>only MP3 files are tagged</source>
        <translation>nur MP3-Dateien werden beschriftet</translation>
    </message>
    <message>
        <source>it is an MP4 file under an MP3&apos;s name</source>
        <translation>sie ist eine MP4-Datei mit dem Namen einer MP3-Datei</translation>
    </message>
    <message>
        <source>the file cannot be written to</source>
        <translation>in die Datei kann nicht geschrieben werden</translation>
    </message>
    <message>
        <source>the file is too large</source>
        <translation>die Datei ist zu groß</translation>
    </message>
    <message>
        <source>its tag is damaged</source>
        <translation>ihr Tag ist beschädigt</translation>
    </message>
    <message>
        <source>its tag holds data that would be lost</source>
        <translation>ihr Tag enthält Daten, die verloren gingen</translation>
    </message>
    <message>
        <source>its old tag holds frames that would be lost</source>
        <translation>ihr alter Tag enthält Felder, die verloren gingen</translation>
    </message>
    <message>
        <source>its tag would become too large</source>
        <translation>ihr Tag würde zu groß</translation>
    </message>
    <message>
        <source>another program is writing to it</source>
        <translation>ein anderes Programm schreibt gerade in sie</translation>
    </message>
    <message>
        <source>the file has changed meanwhile</source>
        <translation>die Datei hat sich inzwischen geändert</translation>
    </message>
    <message>
        <source>no file can be made in its folder</source>
        <translation>in ihrem Ordner kann keine Datei angelegt werden</translation>
    </message>
    <message>
        <source>it is in a form whose tag can&apos;t be written</source>
        <translation>so wie sie aufgebaut ist, kann ihr Tag nicht geschrieben werden</translation>
    </message>
    <message>
        <source>something else would have changed with it</source>
        <translation>etwas anderes hätte sich mitgeändert</translation>
    </message>
    <message>
        <source>the disk is full</source>
        <translation>der Datenträger ist voll</translation>
    </message>
    <message>
        <source>its name is a link to a file of another kind</source>
        <translation>ihr Name ist eine Verknüpfung zu einer Datei anderer Art</translation>
    </message>
    <message>
        <source>it is not MPEG audio</source>
        <translation>sie ist kein MPEG-Audio</translation>
    </message>
    <message>
        <source>too much of it is damaged</source>
        <translation>zu viel von ihr ist beschädigt</translation>
    </message>
    <message>
        <source>it ends early</source>
        <translation>sie endet zu früh</translation>
    </message>
    <message>
        <source>it would pass the limit on file sizes</source>
        <translation>sie würde die erlaubte Dateigröße überschreiten</translation>
    </message>
    <message>
        <source>Its tag is of version 2.3 now, and some frames got other names: %1</source>
        <translation>Ihr Tag hat jetzt Version 2.3, und einige Felder heißen anders: %1</translation>
    </message>
    <message>
        <source>its tag holds compressed, encrypted or grouped frames</source>
        <translation>ihr Tag enthält komprimierte, verschlüsselte oder gruppierte Felder</translation>
    </message>
    <message>
        <source>its tag has got another tempo meanwhile</source>
        <translation>ihr Tag hat inzwischen ein anderes Tempo bekommen</translation>
    </message>
    <message>
        <source>it may not be replaced in its folder</source>
        <translation>sie darf in ihrem Ordner nicht ersetzt werden</translation>
    </message>
    <message>
        <source>there is not enough memory</source>
        <translation>der Arbeitsspeicher reicht nicht</translation>
    </message>
    <message>
        <source>writing to the disk failed</source>
        <translation>das Schreiben auf den Datenträger ist misslungen</translation>
    </message>
    <message>
        <source>Tempo not stored: %1</source>
        <translation>Tempo nicht gespeichert: %1</translation>
    </message>
    <message>
        <source>No tempo: %1</source>
        <translation>Kein Tempo: %1</translation>
    </message>
    <message>
        <source>Analyzed in part: %1</source>
        <translation>Teilweise analysiert: %1</translation>
    </message>
    <message>
        <source>the file is gone</source>
        <translation>die Datei ist weg</translation>
    </message>
    <message>
        <source>, </source>
        <comment>between parts of a sentence</comment>
        <translation>, </translation>
    </message>
    <message>
        <source>; </source>
        <comment>between parts of a sentence</comment>
        <translation>; </translation>
    </message>
</context>
</TS>
