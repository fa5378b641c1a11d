<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>BoardView</name>
    <message>
        <source>seen from below</source>
        <translation>von unten gesehen</translation>
    </message>
</context>
<context>
    <name>ComboBoxDelegate</name>
    <message>
        <source>Yes</source>
        <translation>Ja</translation>
    </message>
    <message>
        <source>No</source>
        <translation>Nein</translation>
    </message>
</context>
<context>
    <name>Export</name>
    <message>
        <source>Export</source>
        <translation>Export</translation>
    </message>
    <message>
        <source>Warning</source>
        <translation>Warnung</translation>
    </message>
    <message>
        <source>The path you selected is not exist</source>
        <translation>Der gewählte Ordner existiert nicht</translation>
    </message>
    <message>
        <source>Path</source>
        <translation>Ordner</translation>
    </message>
    <message>
        <source>Second Dir:</source>
        <translation>Unterordner:</translation>
    </message>
    <message>
        <source>OX</source>
        <translation>OX</translation>
    </message>
    <message>
        <source>Format:</source>
        <translation>Format:</translation>
    </message>
    <message>
        <source>Reference</source>
        <translation>Bezug</translation>
    </message>
    <message>
        <source>X</source>
        <translation>X</translation>
    </message>
    <message>
        <source>Y</source>
        <translation>Y</translation>
    </message>
    <message>
        <source>0</source>
        <translation>0</translation>
    </message>
    <message>
        <source>um</source>
        <translation>µm</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>layer</source>
        <translation>Lage</translation>
    </message>
    <message>
        <source>rotate</source>
        <translation>Drehen</translation>
    </message>
    <message>
        <source>Mirror</source>
        <translation>Spiegeln</translation>
    </message>
    <message>
        <source>X Scale</source>
        <translation>X-Faktor</translation>
    </message>
    <message>
        <source>Y Scale</source>
        <translation>Y-Faktor</translation>
    </message>
    <message>
        <source>Negate</source>
        <translation>Negieren</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>Zeit</translation>
    </message>
    <message>
        <source>No</source>
        <translation>Nein</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>Ja</translation>
    </message>
    <message>
        <source>Clear layer(Make the selected item unselected)</source>
        <translation>Keine Lage (Auswahl aufheben)</translation>
    </message>
    <message>
        <source>Select all layer</source>
        <translation>Alle Lagen auswählen</translation>
    </message>
    <message>
        <source>Board Layer</source>
        <translation>Lagen der Leiterplatte</translation>
    </message>
    <message>
        <source>Set parameters to selected layer</source>
        <translation>Parameter auf ausgewählte Lagen übertragen</translation>
    </message>
    <message>
        <source>Processing</source>
        <translation>In Arbeit</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Please wait</source>
        <translation>Bitte warten</translation>
    </message>
    <message>
        <source>layer :</source>
        <translation>Lage:</translation>
    </message>
</context>
<context>
    <name>ExportRepeat</name>
    <message>
        <source>The folder %1 is gone.</source>
        <translation>Den Ordner %1 gibt es nicht mehr.</translation>
    </message>
    <message>
        <source>The parameters of the layer %1 cannot be chosen.</source>
        <translation>Die Parameter der Lage %1 lassen sich nicht wählen.</translation>
    </message>
    <message>
        <source>The job has no layer %1 any more.</source>
        <translation>Der Auftrag hat keine Lage %1 mehr.</translation>
    </message>
    <message>
        <source>That export resized by %1 µm; the settings now ask for %2 µm.</source>
        <translation>Jener Export änderte die Größe um %1 µm; die Einstellungen verlangen jetzt %2 µm.</translation>
    </message>
</context>
<context>
    <name>ExportResults</name>
    <message>
        <source>Nothing was exported: no layer was chosen.</source>
        <translation>Nichts wurde exportiert: keine Lage war gewählt.</translation>
    </message>
    <message>
        <source>%1 of %2 layers of %3 were written</source>
        <translation>%1 von %2 Lagen von %3 wurden geschrieben</translation>
    </message>
    <message>
        <source>%1 of them empty</source>
        <translation>davon %1 leer</translation>
    </message>
    <message>
        <source>%1 failed</source>
        <translation>%1 gescheitert</translation>
    </message>
    <message>
        <source>%1 cancelled</source>
        <translation>%1 abgebrochen</translation>
    </message>
    <message>
        <source>%1 not exported, the log says why</source>
        <translation>%1 nicht exportiert, das Protokoll sagt warum</translation>
    </message>
    <message numerus="yes">
        <source>%n file(s) are compared with layers of %1.</source>
        <translation>
            <numerusform>%n Datei wird mit einer Lage von %1 verglichen.</numerusform>
            <numerusform>%n Dateien werden mit Lagen von %1 verglichen.</numerusform>
        </translation>
    </message>
    <message>
        <source>, </source>
        <comment>between parts of a sentence</comment>
        <translation>, </translation>
    </message>
    <message>
        <source>.</source>
        <comment>at its end</comment>
        <translation>.</translation>
    </message>
</context>
<context>
    <name>ExportVerifier</name>
    <message>
        <source>Verifying: %1 of %2 layers compared.</source>
        <translation>Prüfung: %1 von %2 Lagen verglichen.</translation>
    </message>
    <message>
        <source>%1 of %2 layers proven within 0.5 µm.</source>
        <translation>%1 von %2 Lagen auf 0,5 µm genau bewiesen.</translation>
    </message>
    <message>
        <source>Not proven: %1.</source>
        <translation>Nicht bewiesen: %1.</translation>
    </message>
</context>
<context>
    <name>FigureInspection</name>
    <message>
        <source>Boundary</source>
        <translation>Fläche (Boundary)</translation>
    </message>
    <message>
        <source>Path</source>
        <translation>Ordner</translation>
    </message>
    <message>
        <source>Text</source>
        <translation>Text</translation>
    </message>
    <message>
        <source>Flash</source>
        <translation>Blitz (Flash)</translation>
    </message>
    <message>
        <source>Stroke</source>
        <translation>Strich</translation>
    </message>
    <message>
        <source>Region</source>
        <translation>Region</translation>
    </message>
    <message>
        <source>Hole</source>
        <translation>Bohrung</translation>
    </message>
    <message>
        <source>Slot</source>
        <translation>Langloch</translation>
    </message>
    <message>
        <source>Routed path</source>
        <translation>Fräsbahn</translation>
    </message>
    <message>
        <source>circle</source>
        <translation>Kreis</translation>
    </message>
    <message>
        <source>rectangle</source>
        <translation>Rechteck</translation>
    </message>
    <message>
        <source>obround</source>
        <translation>Langrund</translation>
    </message>
    <message>
        <source>polygon</source>
        <translation>Vieleck</translation>
    </message>
    <message>
        <source>macro %1</source>
        <translation>Makro %1</translation>
    </message>
    <message>
        <source>From %1</source>
        <translation>Von %1</translation>
    </message>
    <message>
        <source>To %1</source>
        <translation>Nach %1</translation>
    </message>
    <message>
        <source>Length %1</source>
        <translation>Länge %1</translation>
    </message>
    <message>
        <source>Center %1</source>
        <translation>Mittelpunkt %1</translation>
    </message>
    <message>
        <source>Radius %1</source>
        <translation>Radius %1</translation>
    </message>
    <message>
        <source>Aperture D%1, %2, %3</source>
        <translation>Blende D%1, %2, %3</translation>
    </message>
    <message>
        <source>, plated</source>
        <translation>, durchkontaktiert</translation>
    </message>
    <message>
        <source>, not plated</source>
        <translation>, nicht durchkontaktiert</translation>
    </message>
    <message>
        <source>Tool T%1, %2</source>
        <translation>Werkzeug T%1, %2</translation>
    </message>
    <message>
        <source>, clears</source>
        <translation>, löscht</translation>
    </message>
    <message>
        <source>At %1</source>
        <translation>Bei %1</translation>
    </message>
    <message>
        <source>%1 contours, %2 edges</source>
        <translation>%1 Konturen, %2 Kanten</translation>
    </message>
    <message>
        <source>Width %1</source>
        <translation>Breite %1</translation>
    </message>
    <message>
        <source>Line %1 of the file</source>
        <translation>Zeile %1 der Datei</translation>
    </message>
    <message>
        <source>Structure %1</source>
        <translation>Struktur %1</translation>
    </message>
    <message>
        <source>Layer %1</source>
        <translation>Lage %1</translation>
    </message>
    <message>
        <source>%1 of %2 here; click again for the next</source>
        <translation>%1 von %2 hier; noch ein Klick zeigt das nächste</translation>
    </message>
</context>
<context>
    <name>FileProcess</name>
    <message>
        <source>import</source>
        <translation>Import</translation>
    </message>
    <message>
        <source>export</source>
        <translation>Export</translation>
    </message>
    <message>
        <source>Import</source>
        <translation>Import</translation>
    </message>
    <message>
        <source>ODB++</source>
        <translation>ODB++</translation>
    </message>
    <message>
        <source>Information</source>
        <translation>Hinweis</translation>
    </message>
    <message>
        <source>The job with the same name already exists, do you want to overwrite it?</source>
        <translation>Es gibt schon einen Auftrag dieses Namens. Soll er überschrieben werden?</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Fehler</translation>
    </message>
    <message>
        <source>The job unzipped failed, please check your files!</source>
        <translation>Der Auftrag ließ sich nicht entpacken. Bitte die Dateien prüfen!</translation>
    </message>
</context>
<context>
    <name>FolderCheck</name>
    <message>
        <source>The path must be absolute, from the drive or the root on.</source>
        <translation>Der Pfad muss absolut sein, vom Laufwerk oder der Wurzel an.</translation>
    </message>
    <message>
        <source>%1 is no folder.</source>
        <translation>%1 ist kein Ordner.</translation>
    </message>
    <message>
        <source>Nothing can be written in %1: it is read-only.</source>
        <translation>In %1 kann nichts geschrieben werden: der Ordner ist schreibgeschützt.</translation>
    </message>
    <message>
        <source>This folder does not exist yet; it will be made.</source>
        <translation>Diesen Ordner gibt es noch nicht; er wird angelegt.</translation>
    </message>
    <message>
        <source>Imported jobs need a folder.</source>
        <translation>Importierte Aufträge brauchen einen Ordner.</translation>
    </message>
    <message>
        <source>The path has a blank. The commands with which an import tidies up take it for the end of the path: an unpacked .tar may stay behind, and an old job stays although it was to be replaced.</source>
        <translation>Der Pfad enthält ein Leerzeichen. Die Befehle, mit denen ein Import aufräumt, halten es für das Ende des Pfades: eine entpackte .tar-Datei kann liegen bleiben, und ein alter Auftrag bleibt, obwohl er ersetzt werden sollte.</translation>
    </message>
    <message>
        <source>The path has letters that this system&apos;s code page lacks. An import cannot tidy up there: an unpacked .tar stays behind, and an old job stays although it was to be replaced.</source>
        <translation>Der Pfad enthält Buchstaben, die die Codepage dieses Systems nicht hat. Ein Import kann dort nicht aufräumen: eine entpackte .tar-Datei bleibt liegen, und ein alter Auftrag bleibt, obwohl er ersetzt werden sollte.</translation>
    </message>
    <message>
        <source>Files land inside the job&apos;s own folder: whoever replaces or removes the job loses them.</source>
        <translation>Die Dateien landen im Ordner des Auftrags: wer den Auftrag ersetzt oder entfernt, verliert sie.</translation>
    </message>
    <message>
        <source>This folder lies in the folder of the jobs: whoever replaces or removes a job of its name loses the files.</source>
        <translation>Dieser Ordner liegt im Ordner der Aufträge: wer einen Auftrag seines Namens ersetzt oder entfernt, verliert die Dateien.</translation>
    </message>
    <message>
        <source>Exports are not recorded, and the history stays as it is.</source>
        <translation>Exporte werden nicht aufgezeichnet, und der Verlauf bleibt, wie er ist.</translation>
    </message>
    <message>
        <source>%1 is a folder, not a file.</source>
        <translation>%1 ist ein Ordner, keine Datei.</translation>
    </message>
    <message>
        <source>%1 is read-only.</source>
        <translation>%1 ist schreibgeschützt.</translation>
    </message>
</context>
<context>
    <name>GraphicView</name>
    <message>
        <source>%1 cannot be shown.
%2</source>
        <translation>%1 lässt sich nicht zeigen.
%2</translation>
    </message>
    <message>
        <source>%1, as exported: %2</source>
        <translation>%1, wie exportiert: %2</translation>
    </message>
    <message>
        <source>The layer is empty.</source>
        <translation>Die Lage ist leer.</translation>
    </message>
    <message>
        <source>No layer is shown: press an eye in the list of layers.</source>
        <translation>Keine Lage wird gezeigt: ein Auge in der Liste der Lagen drücken.</translation>
    </message>
    <message numerus="yes">
        <source>%1 and %n more</source>
        <translation>
            <numerusform>%1 und %n weitere</numerusform>
            <numerusform>%1 und %n weitere</numerusform>
        </translation>
    </message>
    <message>
        <source>Its layers are being read, or draw nothing of it.</source>
        <translation>Seine Lagen werden gelesen oder zeichnen nichts davon.</translation>
    </message>
    <message>
        <source>Place %1 of %2</source>
        <translation>Stelle %1 von %2</translation>
    </message>
    <message numerus="yes">
        <source>The first %n places are marked.</source>
        <translation>
            <numerusform>Die erste Stelle ist markiert.</numerusform>
            <numerusform>Die ersten %n Stellen sind markiert.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n place(s) marked.</source>
        <translation>
            <numerusform>%n Stelle markiert.</numerusform>
            <numerusform>%n Stellen markiert.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>HistoryPane</name>
    <message>
        <source>rotated by %1°</source>
        <translation>um %1° gedreht</translation>
    </message>
    <message>
        <source>mirrored</source>
        <translation>gespiegelt</translation>
    </message>
    <message>
        <source>scaled by %1 and %2</source>
        <translation>skaliert mit %1 und %2</translation>
    </message>
    <message>
        <source>negated</source>
        <translation>negiert</translation>
    </message>
    <message>
        <source>resized by %1 µm</source>
        <translation>Größe um %1 µm geändert</translation>
    </message>
    <message>
        <source>database unit %1 µm</source>
        <translation>Datenbankeinheit %1 µm</translation>
    </message>
    <message>
        <source>with profile</source>
        <translation>mit Umriss</translation>
    </message>
    <message>
        <source>When</source>
        <translation>Wann</translation>
    </message>
    <message>
        <source>Job</source>
        <translation>Auftrag</translation>
    </message>
    <message>
        <source>Step</source>
        <translation>Step</translation>
    </message>
    <message>
        <source>Format</source>
        <translation>Format</translation>
    </message>
    <message>
        <source>Layers</source>
        <translation>Lagen</translation>
    </message>
    <message>
        <source>Parameters</source>
        <translation>Parameter</translation>
    </message>
    <message>
        <source>Folder</source>
        <translation>Ordner</translation>
    </message>
    <message>
        <source>Open &amp;folder</source>
        <translation>&amp;Ordner öffnen</translation>
    </message>
    <message>
        <source>Open the folder of the files in the system&apos;s file manager</source>
        <translation>Den Ordner der Dateien im Dateimanager des Systems öffnen</translation>
    </message>
    <message>
        <source>Export &amp;again ...</source>
        <translation>Erneut e&amp;xportieren ...</translation>
    </message>
    <message>
        <source>Open the Export dialog with the layers and parameters of this export</source>
        <translation>Den Exportdialog mit den Lagen und Parametern dieses Exports öffnen</translation>
    </message>
    <message>
        <source>The record of exports cannot be read: %1</source>
        <translation>Die Aufzeichnung der Exporte ist nicht lesbar: %1</translation>
    </message>
    <message>
        <source>Exports are not recorded. File &gt; Settings names a file for the record.</source>
        <translation>Exporte werden nicht aufgezeichnet. Datei &gt; Einstellungen nennt eine Datei dafür.</translation>
    </message>
    <message>
        <source>No export has been recorded yet.</source>
        <translation>Noch ist kein Export aufgezeichnet.</translation>
    </message>
    <message numerus="yes">
        <source>%n export(s), the newest first.</source>
        <translation>
            <numerusform>%n Export.</numerusform>
            <numerusform>%n Exporte, der neueste zuerst.</numerusform>
        </translation>
    </message>
    <message>
        <source>not proven</source>
        <translation>nicht bewiesen</translation>
    </message>
    <message>
        <source>%1 of %2 not proven</source>
        <translation>%1 von %2 nicht bewiesen</translation>
    </message>
    <message>
        <source>not verified</source>
        <translation>nicht geprüft</translation>
    </message>
    <message>
        <source>proven</source>
        <translation>bewiesen</translation>
    </message>
    <message>
        <source>%1 of %2 proven</source>
        <translation>%1 von %2 bewiesen</translation>
    </message>
    <message>
        <source>Verified</source>
        <translation>Prüfung</translation>
    </message>
</context>
<context>
    <name>Inspection</name>
    <message>
        <source>Line</source>
        <translation>Linie</translation>
    </message>
    <message>
        <source>Arc</source>
        <translation>Bogen</translation>
    </message>
    <message>
        <source>Pad</source>
        <translation>Pad</translation>
    </message>
    <message>
        <source>Surface</source>
        <translation>Fläche</translation>
    </message>
    <message>
        <source>Symbol %1</source>
        <translation>Symbol %1</translation>
    </message>
    <message>
        <source>, the job&apos;s own</source>
        <translation>, des Auftrags eigenes</translation>
    </message>
    <message>
        <source>, clears</source>
        <translation>, löscht</translation>
    </message>
    <message>
        <source>From %1</source>
        <translation>Von %1</translation>
    </message>
    <message>
        <source>To %1</source>
        <translation>Nach %1</translation>
    </message>
    <message>
        <source>Length %1</source>
        <translation>Länge %1</translation>
    </message>
    <message>
        <source>Center %1</source>
        <translation>Mittelpunkt %1</translation>
    </message>
    <message>
        <source>Radius %1</source>
        <translation>Radius %1</translation>
    </message>
    <message>
        <source>At %1</source>
        <translation>Bei %1</translation>
    </message>
    <message>
        <source>Turned clockwise by %1°</source>
        <translation>Um %1° im Uhrzeigersinn gedreht</translation>
    </message>
    <message>
        <source>Mirrored</source>
        <translation>Gespiegelt</translation>
    </message>
    <message>
        <source>Resized by %1</source>
        <translation>Größe um %1 geändert</translation>
    </message>
    <message>
        <source>%1 contours, %2 edges</source>
        <translation>%1 Konturen, %2 Kanten</translation>
    </message>
    <message>
        <source>Step %1, feature %2</source>
        <translation>Step %1, Element %2</translation>
    </message>
    <message>
        <source>Layer %1</source>
        <translation>Lage %1</translation>
    </message>
    <message>
        <source>%1 of %2 here; click again for the next</source>
        <translation>%1 von %2 hier; noch ein Klick zeigt das nächste</translation>
    </message>
    <message>
        <source>Net %1</source>
        <translation>Netz %1</translation>
    </message>
    <message>
        <source>none</source>
        <translation>keines</translation>
    </message>
    <message>
        <source>Text &quot;%1&quot;</source>
        <translation>Text „%1“</translation>
    </message>
    <message>
        <source>Step %1, feature %2, line %3 of its file</source>
        <translation>Step %1, Element %2, Zeile %3 seiner Datei</translation>
    </message>
    <message>
        <source>Component %1</source>
        <translation>Bauteil %1</translation>
    </message>
    <message>
        <source>Part %1</source>
        <translation>Artikel %1</translation>
    </message>
    <message>
        <source>Package %1, %2 × %3</source>
        <translation>Gehäuse %1, %2 × %3</translation>
    </message>
    <message>
        <source>On the bottom side</source>
        <translation>Auf der Unterseite</translation>
    </message>
    <message>
        <source>On the top side</source>
        <translation>Auf der Oberseite</translation>
    </message>
    <message>
        <source>%1 pins</source>
        <translation>%1 Anschlüsse</translation>
    </message>
    <message>
        <source>and %1 more</source>
        <translation>und %1 weitere</translation>
    </message>
    <message>
        <source>Step %1, line %2 of its file</source>
        <translation>Step %1, Zeile %2 seiner Datei</translation>
    </message>
</context>
<context>
    <name>JobCommands</name>
    <message>
        <source>New name of the job %1:</source>
        <translation>Neuer Name des Auftrags %1:</translation>
    </message>
    <message>
        <source>Rename job</source>
        <translation>Auftrag umbenennen</translation>
    </message>
    <message>
        <source>The system does not rename the folder. Another program may have files of it open.</source>
        <translation>Das System benennt den Ordner nicht um. Vielleicht hat ein anderes Programm Dateien daraus offen.</translation>
    </message>
    <message>
        <source>Remove job</source>
        <translation>Auftrag entfernen</translation>
    </message>
    <message>
        <source>Move the job %1 to the wastebasket?</source>
        <translation>Den Auftrag %1 in den Papierkorb verschieben?</translation>
    </message>
</context>
<context>
    <name>JobListPanel</name>
    <message>
        <source>Filter jobs</source>
        <translation>Aufträge filtern</translation>
    </message>
    <message>
        <source>Job</source>
        <translation>Auftrag</translation>
    </message>
    <message>
        <source>Date</source>
        <translation>Datum</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Größe</translation>
    </message>
    <message>
        <source>Written by</source>
        <translation>Programm</translation>
    </message>
    <message>
        <source>&amp;Open job</source>
        <translation>Auftrag ö&amp;ffnen</translation>
    </message>
    <message>
        <source>Re&amp;name job ...</source>
        <translation>Auftrag um&amp;benennen ...</translation>
    </message>
    <message>
        <source>Show in the file &amp;manager</source>
        <translation>Im Datei&amp;manager zeigen</translation>
    </message>
    <message>
        <source>&amp;Remove job ...</source>
        <translation>Auftrag &amp;entfernen ...</translation>
    </message>
    <message>
        <source>Open the job in the frame (Return or double click)</source>
        <translation>Den umrahmten Auftrag öffnen (Eingabetaste oder Doppelklick)</translation>
    </message>
    <message>
        <source>Give the job&apos;s folder another name</source>
        <translation>Dem Ordner des Auftrags einen anderen Namen geben</translation>
    </message>
    <message>
        <source>Open the job&apos;s folder in the system&apos;s file manager</source>
        <translation>Den Ordner des Auftrags im Dateimanager des Systems öffnen</translation>
    </message>
    <message>
        <source>Move the job&apos;s folder to the wastebasket</source>
        <translation>Den Ordner des Auftrags in den Papierkorb verschieben</translation>
    </message>
    <message>
        <source>in %1</source>
        <translation>in %1</translation>
    </message>
    <message>
        <source>saved %1</source>
        <translation>gespeichert %1</translation>
    </message>
    <message>
        <source>unpacked or changed %1</source>
        <translation>entpackt oder geändert %1</translation>
    </message>
    <message>
        <source>written by %1</source>
        <translation>geschrieben von %1</translation>
    </message>
    <message>
        <source>made from %1</source>
        <translation>entstanden aus %1</translation>
    </message>
    <message>
        <source>There are no jobs yet.

Import reads ODB++ job archives (.tgz).
They can also be dropped on this window.</source>
        <translation>Noch gibt es keine Aufträge.

Import liest ODB++-Archive (.tgz).
Sie können auch auf dieses Fenster gezogen werden.</translation>
    </message>
    <message>
        <source>No job&apos;s name contains &quot;%1&quot;.</source>
        <translation>Kein Auftrag hat „%1“ im Namen.</translation>
    </message>
</context>
<context>
    <name>Jobs</name>
    <message>
        <source>A job needs a name.</source>
        <translation>Ein Auftrag braucht einen Namen.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; cannot stand in a job&apos;s name.</source>
        <translation>„%1“ kann nicht im Namen eines Auftrags stehen.</translation>
    </message>
    <message>
        <source>A blank in a job&apos;s name would keep imports from replacing the job.</source>
        <translation>Ein Leerzeichen im Namen verhindert, dass Importe den Auftrag ersetzen.</translation>
    </message>
    <message>
        <source>There is a %1 already.</source>
        <translation>Es gibt schon ein %1.</translation>
    </message>
</context>
<context>
    <name>LanguageMenu</name>
    <message>
        <source>&amp;Language</source>
        <translation>&amp;Sprache</translation>
    </message>
    <message>
        <source>As the system</source>
        <translation>Wie das System</translation>
    </message>
</context>
<context>
    <name>LayerFile</name>
    <message>
        <source>%1: the number format is not stated; taken as %2 digits before and %3 behind the decimal point of inches</source>
        <translation>%1: Das Zahlenformat ist nicht angegeben; gelesen als Zoll mit %2 Stellen vor und %3 hinter dem Dezimalpunkt</translation>
    </message>
    <message>
        <source>%1: the number format is not stated; taken as %2 digits before and %3 behind the decimal point of millimetres</source>
        <translation>%1: Das Zahlenformat ist nicht angegeben; gelesen als Millimeter mit %2 Stellen vor und %3 hinter dem Dezimalpunkt</translation>
    </message>
    <message>
        <source>%1: it is not stated which zeros are left out; taken as the leading ones (TZ)</source>
        <translation>%1: Es ist nicht angegeben, welche Nullen weggelassen sind; gelesen als die führenden (TZ)</translation>
    </message>
</context>
<context>
    <name>LayerPanel</name>
    <message>
        <source>Layer</source>
        <translation>Lage</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>Typ</translation>
    </message>
    <message>
        <source>Step</source>
        <translation>Step</translation>
    </message>
    <message>
        <source>No job is open.</source>
        <translation>Kein Auftrag ist offen.</translation>
    </message>
    <message>
        <source>The job has no layers.</source>
        <translation>Der Auftrag hat keine Lagen.</translation>
    </message>
    <message>
        <source>Opacity</source>
        <translation>Deckkraft</translation>
    </message>
    <message>
        <source>&amp;Opacity</source>
        <translation>&amp;Deckkraft</translation>
    </message>
    <message>
        <source>How dense the chosen layer is drawn</source>
        <translation>Wie dicht die gewählte Lage gezeichnet wird</translation>
    </message>
    <message>
        <source>%1, from %2 to %3</source>
        <translation>%1, von %2 bis %3</translation>
    </message>
    <message>
        <source>file</source>
        <translation>Datei</translation>
    </message>
    <message>
        <source>Show or hide this layer (Space)</source>
        <translation>Diese Lage zeigen oder verbergen (Leertaste)</translation>
    </message>
    <message>
        <source>shown</source>
        <translation>sichtbar</translation>
    </message>
    <message>
        <source>hidden</source>
        <translation>verborgen</translation>
    </message>
    <message>
        <source>%1 %</source>
        <translation>%1 %</translation>
    </message>
    <message>
        <source>Color of %1</source>
        <translation>Farbe von %1</translation>
    </message>
    <message>
        <source>Hide</source>
        <translation>Verbergen</translation>
    </message>
    <message>
        <source>Show</source>
        <translation>Zeigen</translation>
    </message>
    <message>
        <source>Show only this one</source>
        <translation>Nur diese zeigen</translation>
    </message>
    <message>
        <source>Color ...</source>
        <translation>Farbe ...</translation>
    </message>
    <message>
        <source>Remove %1 from the list</source>
        <translation>%1 aus der Liste entfernen</translation>
    </message>
</context>
<context>
    <name>LayerWords</name>
    <message>
        <source>signal</source>
        <translation>Signal</translation>
    </message>
    <message>
        <source>power ground</source>
        <translation>Versorgung</translation>
    </message>
    <message>
        <source>dielectric</source>
        <translation>Dielektrikum</translation>
    </message>
    <message>
        <source>mixed</source>
        <translation>gemischt</translation>
    </message>
    <message>
        <source>solder mask</source>
        <translation>Lötstoppmaske</translation>
    </message>
    <message>
        <source>solder paste</source>
        <translation>Lotpaste</translation>
    </message>
    <message>
        <source>silk screen</source>
        <translation>Bestückungsdruck</translation>
    </message>
    <message>
        <source>drill</source>
        <translation>Bohrungen</translation>
    </message>
    <message>
        <source>rout</source>
        <translation>Fräsen</translation>
    </message>
    <message>
        <source>document</source>
        <translation>Dokument</translation>
    </message>
    <message>
        <source>component</source>
        <translation>Bauteile</translation>
    </message>
    <message>
        <source>mask</source>
        <translation>Maske</translation>
    </message>
    <message>
        <source>conductive paste</source>
        <translation>Leitpaste</translation>
    </message>
    <message>
        <source>misc</source>
        <translation>sonstiges</translation>
    </message>
    <message>
        <source>negative</source>
        <translation>negativ</translation>
    </message>
</context>
<context>
    <name>LogPane</name>
    <message>
        <source>All lines</source>
        <translation>Alle Zeilen</translation>
    </message>
    <message>
        <source>Nothing has been logged yet.</source>
        <translation>Noch ist nichts protokolliert.</translation>
    </message>
    <message>
        <source>No warnings, no errors.</source>
        <translation>Keine Warnungen, keine Fehler.</translation>
    </message>
    <message>
        <source>From</source>
        <translation>Ab</translation>
    </message>
    <message>
        <source>debug</source>
        <translation>Fehlersuche</translation>
    </message>
    <message>
        <source>information</source>
        <translation>Information</translation>
    </message>
    <message>
        <source>warnings</source>
        <translation>Warnungen</translation>
    </message>
    <message>
        <source>errors</source>
        <translation>Fehler</translation>
    </message>
    <message>
        <source>Show lines of this weight and more</source>
        <translation>Zeilen ab diesem Gewicht zeigen</translation>
    </message>
    <message>
        <source>Only lines with ...</source>
        <translation>Nur Zeilen mit ...</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>Leeren</translation>
    </message>
    <message>
        <source>Forget all lines and problems</source>
        <translation>Alle Zeilen und Probleme vergessen</translation>
    </message>
    <message>
        <source>Problems</source>
        <translation>Probleme</translation>
    </message>
    <message>
        <source>Problems (%1)</source>
        <translation>Probleme (%1)</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>CAM Workbench</source>
        <translation>CAM Workbench</translation>
    </message>
    <message>
        <source>Open a job first, then export its layers.</source>
        <translation>Zuerst einen Auftrag öffnen, dann seine Lagen exportieren.</translation>
    </message>
    <message>
        <source>Jobs</source>
        <translation>Aufträge</translation>
    </message>
    <message>
        <source>Layers</source>
        <translation>Lagen</translation>
    </message>
    <message>
        <source>Log</source>
        <translation>Protokoll</translation>
    </message>
    <message>
        <source>Export results</source>
        <translation>Exportergebnis</translation>
    </message>
    <message>
        <source>History</source>
        <translation>Verlauf</translation>
    </message>
    <message>
        <source>No job is open.</source>
        <translation>Kein Auftrag ist offen.</translation>
    </message>
    <message>
        <source>Plug-ins</source>
        <translation>Plug-ins</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Datei</translation>
    </message>
    <message>
        <source>&amp;Refresh jobs</source>
        <translation>Aufträge &amp;neu lesen</translation>
    </message>
    <message>
        <source>Show job &amp;folder</source>
        <translation>Ordner der A&amp;ufträge zeigen</translation>
    </message>
    <message>
        <source>&amp;Settings ...</source>
        <translation>&amp;Einstellungen ...</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>&amp;Beenden</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>&amp;Ansicht</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>&amp;Hilfe</translation>
    </message>
    <message>
        <source>&amp;About</source>
        <translation>&amp;Über</translation>
    </message>
    <message>
        <source>Write layers of the open job as GDSII or Gerber files</source>
        <translation>Lagen des offenen Auftrags als GDSII- oder Gerber-Dateien schreiben</translation>
    </message>
    <message>
        <source>No plug-in is loaded; the log says why.</source>
        <translation>Kein Plug-in ist geladen; das Protokoll sagt warum.</translation>
    </message>
    <message>
        <source>Ready</source>
        <translation>Bereit</translation>
    </message>
    <message>
        <source>The job&apos;s layers cannot be read:
%1</source>
        <translation>Die Lagen des Auftrags sind nicht lesbar:
%1</translation>
    </message>
    <message>
        <source>Choose a layer.</source>
        <translation>Bitte eine Lage wählen.</translation>
    </message>
    <message>
        <source>The job %1 is in the wastebasket.</source>
        <translation>Der Auftrag %1 liegt im Papierkorb.</translation>
    </message>
    <message>
        <source>%1 holds no ODB++ job.</source>
        <translation>%1 enthält keinen ODB++-Auftrag.</translation>
    </message>
    <message>
        <source>Imported %1 as the job %2.</source>
        <translation>%1 als Auftrag %2 importiert.</translation>
    </message>
    <message numerus="yes">
        <source>Exporting %n layer(s) to %1</source>
        <translation>
            <numerusform>%n Lage wird nach %1 exportiert</numerusform>
            <numerusform>%n Lagen werden nach %1 exportiert</numerusform>
        </translation>
    </message>
    <message>
        <source>There is no job %1 any more.</source>
        <translation>Den Auftrag %1 gibt es nicht mehr.</translation>
    </message>
    <message>
        <source>The job %1 has no step %2 any more.</source>
        <translation>Der Auftrag %1 hat keinen Step %2 mehr.</translation>
    </message>
    <message>
        <source>%1 - CAM Workbench</source>
        <translation>%1 - CAM Workbench</translation>
    </message>
    <message>
        <source>No job open</source>
        <translation>Kein Auftrag offen</translation>
    </message>
    <message>
        <source>%1  |  step %2  |  %3 layers</source>
        <translation>%1  |  Step %2  |  %3 Lagen</translation>
    </message>
    <message>
        <source>Close &quot;%1&quot; first.</source>
        <translation>Zuerst „%1“ schließen.</translation>
    </message>
    <message>
        <source>The settings cannot be written to %1.</source>
        <translation>Die Einstellungen lassen sich nicht in %1 schreiben.</translation>
    </message>
    <message>
        <source>The new settings hold from now on.</source>
        <translation>Die neuen Einstellungen gelten ab jetzt.</translation>
    </message>
    <message>
        <source>About CAM Workbench</source>
        <translation>Über CAM Workbench</translation>
    </message>
    <message>
        <source>&lt;b&gt;CAM Workbench %1&lt;/b&gt;&lt;p&gt;A small desktop host for CAM plug-ins.&lt;/p&gt;&lt;p&gt;Plug-ins: %2&lt;/p&gt;&lt;p&gt;Qt %3&lt;/p&gt;</source>
        <translation>&lt;b&gt;CAM Workbench %1&lt;/b&gt;&lt;p&gt;Ein kleines Programm für CAM-Plug-ins.&lt;/p&gt;&lt;p&gt;Plug-ins: %2&lt;/p&gt;&lt;p&gt;Qt %3&lt;/p&gt;</translation>
    </message>
    <message>
        <source>none</source>
        <translation>keine</translation>
    </message>
    <message>
        <source>&amp;User guide</source>
        <translation>&amp;Handbuch</translation>
    </message>
    <message>
        <source>&amp;Keyboard</source>
        <translation>&amp;Tastatur</translation>
    </message>
    <message>
        <source>Take in ODB++ job archives, GDSII, Gerber and drill files</source>
        <translation>ODB++-Archive, GDSII-, Gerber- und Bohrdateien einlesen</translation>
    </message>
    <message>
        <source>No layer of the job is named like %1.</source>
        <translation>Keine Lage des Auftrags heißt wie %1.</translation>
    </message>
    <message>
        <source>List the jobs anew, and read the open one again</source>
        <translation>Die Aufträge neu auflisten und den offenen neu lesen</translation>
    </message>
</context>
<context>
    <name>Manual</name>
    <message>
        <source>User guide</source>
        <translation>Handbuch</translation>
    </message>
</context>
<context>
    <name>MessageBar</name>
    <message>
        <source>Details</source>
        <translation>Einzelheiten</translation>
    </message>
    <message>
        <source>Open folder</source>
        <translation>Ordner öffnen</translation>
    </message>
    <message>
        <source>Dismiss</source>
        <translation>Schließen</translation>
    </message>
</context>
<context>
    <name>PictureFile</name>
    <message>
        <source>%1     Scale %2</source>
        <translation>%1     Maßstab %2</translation>
    </message>
    <message>
        <source>%1: expected a name that ends in .png, .pdf or .svg</source>
        <translation>%1: erwartet wird ein Name, der auf .png, .pdf oder .svg endet</translation>
    </message>
    <message>
        <source>%1 cannot be written: %2</source>
        <translation>%1 kann nicht geschrieben werden: %2</translation>
    </message>
</context>
<context>
    <name>PrintDialog</name>
    <message>
        <source>As large as the &amp;page allows</source>
        <translation>So groß, wie die &amp;Seite erlaubt</translation>
    </message>
    <message>
        <source>&amp;Scale</source>
        <translation>&amp;Maßstab</translation>
    </message>
    <message>
        <source>Print</source>
        <translation>Drucken</translation>
    </message>
    <message>
        <source>How large things come out: 1 is their true size, 2 is twice as large</source>
        <translation>Wie groß gedruckt wird: 1 ist die wahre Größe, 2 ist doppelt so groß</translation>
    </message>
    <message>
        <source>&amp;Title</source>
        <translation>&amp;Titel</translation>
    </message>
    <message>
        <source>&amp;Print ...</source>
        <translation>&amp;Drucken ...</translation>
    </message>
    <message>
        <source>P&amp;age ...</source>
        <translation>Se&amp;ite ...</translation>
    </message>
    <message>
        <source>%1 of the board are printed as %2, scale %3.</source>
        <translation>%1 der Leiterplatte werden als %2 gedruckt, Maßstab %3.</translation>
    </message>
    <message>
        <source>There is no room for all of what is seen.</source>
        <translation>Für alles, was zu sehen ist, reicht der Platz nicht.</translation>
    </message>
    <message>
        <source>The system has no printer.</source>
        <translation>Das System hat keinen Drucker.</translation>
    </message>
</context>
<context>
    <name>Printing</name>
    <message>
        <source>Scale %1</source>
        <translation>Maßstab %1</translation>
    </message>
    <message>
        <source>seen from below</source>
        <translation>von unten gesehen</translation>
    </message>
    <message>
        <source>Nothing can be printed on %1.</source>
        <translation>Auf %1 kann nicht gedruckt werden.</translation>
    </message>
    <message>
        <source>The page was not printed.</source>
        <translation>Die Seite wurde nicht gedruckt.</translation>
    </message>
</context>
<context>
    <name>RecentFiles</name>
    <message>
        <source>Recent &amp;layer files</source>
        <translation>Zuletzt geöffnete &amp;Lagendateien</translation>
    </message>
    <message>
        <source>No layer file has been opened yet</source>
        <translation>Es wurde noch keine Lagendatei geöffnet</translation>
    </message>
</context>
<context>
    <name>RecentJobs</name>
    <message>
        <source>Recent &amp;jobs</source>
        <translation>&amp;Letzte Aufträge</translation>
    </message>
    <message>
        <source>No job has been opened yet</source>
        <translation>Noch kein Auftrag wurde geöffnet</translation>
    </message>
</context>
<context>
    <name>ResultsPane</name>
    <message>
        <source>waiting</source>
        <translation>wartet</translation>
    </message>
    <message>
        <source>being written</source>
        <translation>wird geschrieben</translation>
    </message>
    <message>
        <source>written</source>
        <translation>geschrieben</translation>
    </message>
    <message>
        <source>written, the layer is empty</source>
        <translation>geschrieben, die Lage ist leer</translation>
    </message>
    <message>
        <source>failed: %1</source>
        <translation>gescheitert: %1</translation>
    </message>
    <message>
        <source>cancelled</source>
        <translation>abgebrochen</translation>
    </message>
    <message>
        <source>not exported: the log says why</source>
        <translation>nicht exportiert: das Protokoll sagt warum</translation>
    </message>
    <message>
        <source>Nothing has been exported yet.</source>
        <translation>Noch ist nichts exportiert.</translation>
    </message>
    <message>
        <source>Layer</source>
        <translation>Lage</translation>
    </message>
    <message>
        <source>Result</source>
        <translation>Ergebnis</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Größe</translation>
    </message>
    <message>
        <source>File</source>
        <translation>Datei</translation>
    </message>
    <message>
        <source>cannot say: %1</source>
        <translation>nicht zu sagen: %1</translation>
    </message>
    <message>
        <source>proven</source>
        <translation>bewiesen</translation>
    </message>
    <message numerus="yes">
        <source>not proven, %n place(s) differ</source>
        <translation>
            <numerusform>nicht bewiesen, %n Stelle weicht ab</numerusform>
            <numerusform>nicht bewiesen, %n Stellen weichen ab</numerusform>
        </translation>
    </message>
    <message>
        <source>Verification</source>
        <translation>Prüfung</translation>
    </message>
    <message>
        <source>compared with its layer</source>
        <translation>mit ihrer Lage verglichen</translation>
    </message>
    <message>
        <source>%1 µm missing at %2, %3 mm, %4 mm²</source>
        <translation>%1 µm fehlen bei %2, %3 mm, %4 mm²</translation>
    </message>
    <message>
        <source>%1 µm too much at %2, %3 mm, %4 mm²</source>
        <translation>%1 µm zu viel bei %2, %3 mm, %4 mm²</translation>
    </message>
    <message numerus="yes">
        <source>and %n more place(s)</source>
        <translation>
            <numerusform>und %n weitere Stelle</numerusform>
            <numerusform>und %n weitere Stellen</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>RotateComboxDelegete</name>
    <message>
        <source>0</source>
        <translation>0</translation>
    </message>
    <message>
        <source>90</source>
        <translation>90</translation>
    </message>
    <message>
        <source>180</source>
        <translation>180</translation>
    </message>
    <message>
        <source>270</source>
        <translation>270</translation>
    </message>
</context>
<context>
    <name>SceneStore</name>
    <message>
        <source>Reading %1 ... %2 %</source>
        <translation>%1 wird gelesen ... %2 %</translation>
    </message>
</context>
<context>
    <name>Search</name>
    <message>
        <source>Search</source>
        <translation>Suche</translation>
    </message>
    <message>
        <source>F&amp;ind ...</source>
        <translation>S&amp;uchen ...</translation>
    </message>
    <message>
        <source>Search the step for components, nets, symbols and attributes</source>
        <translation>Bauteile, Netze, Symbole und Attribute im Step suchen</translation>
    </message>
    <message>
        <source>&amp;Next place</source>
        <translation>&amp;Nächste Stelle</translation>
    </message>
    <message>
        <source>Go to the next place of what was found</source>
        <translation>Zur nächsten Stelle des Gefundenen gehen</translation>
    </message>
    <message>
        <source>&amp;Previous place</source>
        <translation>&amp;Vorige Stelle</translation>
    </message>
    <message>
        <source>Go to the place of what was found before this one</source>
        <translation>Zur vorigen Stelle des Gefundenen gehen</translation>
    </message>
</context>
<context>
    <name>SearchIndex</name>
    <message>
        <source>bottom side</source>
        <translation>Unterseite</translation>
    </message>
    <message>
        <source>top side</source>
        <translation>Oberseite</translation>
    </message>
    <message>
        <source>components</source>
        <translation>Bauteile</translation>
    </message>
</context>
<context>
    <name>SearchPanel</name>
    <message>
        <source>Component, part, package, net, symbol, attribute</source>
        <translation>Bauteil, Artikel, Gehäuse, Netz, Symbol, Attribut</translation>
    </message>
    <message>
        <source>* and ? stand for any letters and for any letter</source>
        <translation>* und ? stehen für beliebige Zeichen und für ein beliebiges</translation>
    </message>
    <message>
        <source>Found</source>
        <translation>Gefunden</translation>
    </message>
    <message>
        <source>Where</source>
        <translation>Wo</translation>
    </message>
    <message>
        <source>Components</source>
        <translation>Bauteile</translation>
    </message>
    <message>
        <source>Nets</source>
        <translation>Netze</translation>
    </message>
    <message>
        <source>Symbols</source>
        <translation>Symbole</translation>
    </message>
    <message>
        <source>Attributes</source>
        <translation>Attribute</translation>
    </message>
    <message>
        <source>%1 more: type more of the name</source>
        <translation>%1 weitere: mehr vom Namen eingeben</translation>
    </message>
    <message>
        <source>Reading the step ... %1 %</source>
        <translation>Der Step wird gelesen ... %1 %</translation>
    </message>
    <message>
        <source>No job is open.</source>
        <translation>Es ist kein Auftrag offen.</translation>
    </message>
    <message>
        <source>Nothing of that name is in the step.</source>
        <translation>Nichts im Step heißt so.</translation>
    </message>
    <message>
        <source>Return shows it, Return again its next place. Esc closes.</source>
        <translation>Eingabe zeigt es, noch einmal die nächste Stelle. Esc schließt.</translation>
    </message>
</context>
<context>
    <name>SettingsDialog</name>
    <message>
        <source>Exports include the board&apos;s &amp;profile</source>
        <translation>Exporte enthalten den Um&amp;riss der Leiterplatte</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>&amp;Jobs</source>
        <translation>&amp;Aufträge</translation>
    </message>
    <message>
        <source>The folder that imported jobs are unpacked to</source>
        <translation>Der Ordner, in den importierte Aufträge entpackt werden</translation>
    </message>
    <message>
        <source>&amp;Exports</source>
        <translation>&amp;Exporte</translation>
    </message>
    <message>
        <source>the job&apos;s own folder</source>
        <translation>der Ordner des Auftrags</translation>
    </message>
    <message>
        <source>The folder that the Export dialog proposes</source>
        <translation>Der Ordner, den der Exportdialog vorschlägt</translation>
    </message>
    <message>
        <source>&amp;Folder within it</source>
        <translation>&amp;Unterordner darin</translation>
    </message>
    <message>
        <source>By how much every feature grows, half of it on each side</source>
        <translation>Um wie viel jedes Element wächst, je zur Hälfte auf beiden Seiten</translation>
    </message>
    <message>
        <source>&amp;Resize by</source>
        <translation>&amp;Größe ändern um</translation>
    </message>
    <message>
        <source>&amp;Database unit</source>
        <translation>&amp;Datenbankeinheit</translation>
    </message>
    <message>
        <source>Re&amp;cord exports in</source>
        <translation>Exporte auf&amp;zeichnen in</translation>
    </message>
    <message>
        <source>exports are not recorded</source>
        <translation>Exporte werden nicht aufgezeichnet</translation>
    </message>
    <message>
        <source>Choose a folder</source>
        <translation>Ordner wählen</translation>
    </message>
    <message>
        <source>Choose a file</source>
        <translation>Datei wählen</translation>
    </message>
</context>
<context>
    <name>ShortcutsDialog</name>
    <message>
        <source>Keyboard</source>
        <translation>Tastatur</translation>
    </message>
    <message>
        <source>Command</source>
        <translation>Befehl</translation>
    </message>
    <message>
        <source>Key</source>
        <translation>Taste</translation>
    </message>
    <message>
        <source>What it does</source>
        <translation>Was er tut</translation>
    </message>
    <message>
        <source>Panes</source>
        <translation>Fenster</translation>
    </message>
    <message>
        <source>Next field or pane</source>
        <translation>Nächstes Feld oder Fenster</translation>
    </message>
    <message>
        <source>Menus</source>
        <translation>Menüs</translation>
    </message>
    <message>
        <source>Open the job in the frame</source>
        <translation>Den umrahmten Auftrag öffnen</translation>
    </message>
    <message>
        <source>Menu of the job or layer in the frame</source>
        <translation>Menü zu Auftrag oder Lage</translation>
    </message>
</context>
<context>
    <name>Trash</name>
    <message>
        <source>The system does not move %1 to the wastebasket.</source>
        <translation>Das System verschiebt %1 nicht in den Papierkorb.</translation>
    </message>
    <message>
        <source>This program was built with a Qt that knows no wastebasket; remove %1 in the file manager.</source>
        <translation>Dieses Programm wurde mit einem Qt gebaut, das keinen Papierkorb kennt; bitte %1 im Dateimanager entfernen.</translation>
    </message>
</context>
<context>
    <name>ViewCommands</name>
    <message>
        <source>grown by %1 µm</source>
        <translation>vergrößert um %1 µm</translation>
    </message>
    <message>
        <source>shrunk by %1 µm</source>
        <translation>verkleinert um %1 µm</translation>
    </message>
    <message>
        <source>negated</source>
        <translation>negiert</translation>
    </message>
    <message>
        <source>scaled by %1 and %2</source>
        <translation>skaliert mit %1 und %2</translation>
    </message>
    <message>
        <source>mirrored</source>
        <translation>gespiegelt</translation>
    </message>
    <message>
        <source>rotated by %1°</source>
        <translation>um %1° gedreht</translation>
    </message>
    <message>
        <source>&amp;Open layer files ...</source>
        <translation>Lagendateien ö&amp;ffnen ...</translation>
    </message>
    <message>
        <source>%1: nothing is drawn in it</source>
        <translation>%1: darin ist nichts gezeichnet</translation>
    </message>
    <message>
        <source>&amp;Fit board</source>
        <translation>&amp;Leiterplatte zeigen</translation>
    </message>
    <message>
        <source>Show all of the board</source>
        <translation>Die ganze Leiterplatte zeigen</translation>
    </message>
    <message>
        <source>Fit &amp;everything</source>
        <translation>&amp;Alles zeigen</translation>
    </message>
    <message>
        <source>Show everything that is drawn</source>
        <translation>Alles zeigen, was gezeichnet ist</translation>
    </message>
    <message>
        <source>Seen from &amp;below</source>
        <translation>Von u&amp;nten gesehen</translation>
    </message>
    <message>
        <source>Look at the board from its bottom side</source>
        <translation>Die Leiterplatte von ihrer Unterseite sehen</translation>
    </message>
    <message>
        <source>&amp;As exported</source>
        <translation>Wie e&amp;xportiert</translation>
    </message>
    <message>
        <source>Next &amp;unit</source>
        <translation>Nächste &amp;Einheit</translation>
    </message>
    <message>
        <source>Millimetres, inches, mils</source>
        <translation>Millimeter, Zoll, Mil</translation>
    </message>
    <message>
        <source>All &amp;copper</source>
        <translation>Alles &amp;Kupfer</translation>
    </message>
    <message>
        <source>&amp;Top side</source>
        <translation>&amp;Oberseite</translation>
    </message>
    <message>
        <source>B&amp;ottom side, from below</source>
        <translation>&amp;Unterseite, von unten</translation>
    </message>
    <message>
        <source>&amp;Drill over copper</source>
        <translation>&amp;Bohrungen über Kupfer</translation>
    </message>
    <message>
        <source>Show these layers and no others</source>
        <translation>Diese Lagen zeigen und keine anderen</translation>
    </message>
    <message>
        <source>Open layer files</source>
        <translation>Lagendateien öffnen</translation>
    </message>
    <message>
        <source>Layer files (%1)</source>
        <translation>Lagendateien (%1)</translation>
    </message>
    <message>
        <source>All files</source>
        <translation>Alle Dateien</translation>
    </message>
    <message>
        <source>Save &amp;picture ...</source>
        <translation>&amp;Bild speichern ...</translation>
    </message>
    <message>
        <source>Save what is seen as PNG, PDF or SVG</source>
        <translation>Was zu sehen ist als PNG, PDF oder SVG speichern</translation>
    </message>
    <message>
        <source>&amp;Measure</source>
        <translation>&amp;Messen</translation>
    </message>
    <message>
        <source>Press two places; centers, corners, ends and edges catch the mouse</source>
        <translation>Zwei Stellen drücken; Mitten, Ecken, Enden und Kanten fangen die Maus</translation>
    </message>
    <message>
        <source>Save picture</source>
        <translation>Bild speichern</translation>
    </message>
    <message>
        <source>Pictures (%1)</source>
        <translation>Bilder (%1)</translation>
    </message>
    <message>
        <source>Show GDSII, Gerber and drill files over the job</source>
        <translation>GDSII-, Gerber- und Bohrdateien über dem Auftrag zeigen</translation>
    </message>
    <message>
        <source>P&amp;rint ...</source>
        <translation>D&amp;rucken ...</translation>
    </message>
    <message>
        <source>Print what is seen, in its true size or as large as the page allows</source>
        <translation>Drucken, was zu sehen ist: in wahrer Größe oder so groß, wie die Seite erlaubt</translation>
    </message>
    <message>
        <source>&amp;Compare files with layers ...</source>
        <translation>Dateien mit Lagen &amp;vergleichen ...</translation>
    </message>
    <message>
        <source>&amp;Differences</source>
        <translation>&amp;Unterschiede</translation>
    </message>
    <message>
        <source>Show where files that have been compared differ from their layers</source>
        <translation>Zeigen, wo verglichene Dateien von ihren Lagen abweichen</translation>
    </message>
    <message>
        <source>Compare files with layers</source>
        <translation>Dateien mit Lagen vergleichen</translation>
    </message>
    <message>
        <source>Compare GDSII and Gerber files with their layers, and mark where they differ</source>
        <translation>Dateien mit ihren Lagen vergleichen und Abweichungen markieren</translation>
    </message>
    <message>
        <source>Show layers as exports change them, or as they are in the job</source>
        <translation>Lagen wie exportiert zeigen, oder wie sie im Auftrag sind</translation>
    </message>
</context>
<context>
    <name>hostsettings</name>
    <message>
        <source>%1 is no folder that can be written to.</source>
        <translation>%1 ist kein Ordner, in den geschrieben werden kann.</translation>
    </message>
    <message>
        <source>Features keep their size.</source>
        <translation>Elemente behalten ihre Größe.</translation>
    </message>
    <message>
        <source>Exports grow features by %1 µm, %2 µm on each side.</source>
        <translation>Exporte vergrößern Elemente um %1 µm, %2 µm auf jeder Seite.</translation>
    </message>
    <message>
        <source>Exports shrink features by %1 µm, %2 µm on each side.</source>
        <translation>Exporte verkleinern Elemente um %1 µm, %2 µm auf jeder Seite.</translation>
    </message>
</context>
<context>
    <name>main</name>
    <message>
        <source>Settings of this run will be lost: %1</source>
        <translation>Einstellungen dieses Laufs gehen verloren: %1</translation>
    </message>
    <message>
        <source>The settings of %1 have been taken over. From now on they are in %2.</source>
        <translation>Die Einstellungen aus %1 wurden übernommen. Sie liegen ab jetzt in %2.</translation>
    </message>
</context>
</TS>
