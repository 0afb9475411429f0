<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de">
<context>
    <name>Reading</name>
    <message>
        <source>There is no such file.</source>
        <translation>Diese Datei gibt es nicht.</translation>
    </message>
    <message>
        <source>This is a folder.</source>
        <translation>Das ist ein Ordner.</translation>
    </message>
    <message>
        <source>This is no regular file.</source>
        <translation>Das ist keine gewöhnliche Datei.</translation>
    </message>
    <message>
        <source>The file looks like JSON but is none: %1.</source>
        <translation>Die Datei sieht wie JSON aus, ist aber keines: %1.</translation>
    </message>
    <message>
        <source>The JSON is shown as it is. %1</source>
        <translation>Das JSON wird gezeigt, wie es ist. %1</translation>
    </message>
    <message>
        <source>The Macintosh half of a recorded machine.</source>
        <translation>Die Macintosh-Hälfte eines aufgezeichneten Rechners.</translation>
    </message>
    <message>
        <source>The file is no recording of a machine: %1</source>
        <translation>Die Datei ist keine Aufzeichnung eines Rechners: %1</translation>
    </message>
    <message>
        <source>The file is empty.</source>
        <translation>Die Datei ist leer.</translation>
    </message>
    <message>
        <source>Parts of the file are no text: %1 stands for them.</source>
        <translation>Teile der Datei sind kein Text: Dafür steht %1.</translation>
    </message>
    <message>
        <source>The file is hardly a report: symbols stand for characters that do not print.</source>
        <translation>Die Datei ist kaum ein Bericht: Für Zeichen, die nicht druckbar sind, stehen Symbole.</translation>
    </message>
    <message>
        <source>The file is too large for a report: it has more than %1 MB.</source>
        <translation>Die Datei ist zu groß für einen Bericht: Sie hat mehr als %1 MB.</translation>
    </message>
</context>
<context>
    <name>main</name>
    <message>
        <source>Shows system-information reports.</source>
        <translation>Zeigt Berichte mit Systeminformationen.</translation>
    </message>
    <message>
        <source>A report to open; without any, this machine&apos;s.</source>
        <translation>Ein Bericht, der geöffnet wird; ohne Angabe der dieses Rechners.</translation>
    </message>
</context>
<context>
    <name>norvex::Viewer::Comparison</name>
    <message>
        <source>The section</source>
        <translation>Der Abschnitt</translation>
    </message>
    <message>
        <source>Other lines</source>
        <translation>Andere Zeilen</translation>
    </message>
    <message>
        <source>Expected to differ: %1</source>
        <translation>Erwartungsgemäß verschieden: %1</translation>
    </message>
    <message>
        <source>%1 more differences are not shown</source>
        <translation>%1 weitere Unterschiede werden nicht gezeigt</translation>
    </message>
    <message>
        <source>added</source>
        <translation>hinzugekommen</translation>
    </message>
    <message>
        <source>removed</source>
        <translation>entfallen</translation>
    </message>
    <message>
        <source>changed</source>
        <translation>geändert</translation>
    </message>
    <message>
        <source>moved</source>
        <translation>verschoben</translation>
    </message>
    <message>
        <source>%1 changed</source>
        <translation>%1 geändert</translation>
    </message>
    <message>
        <source>%1 added</source>
        <translation>%1 hinzugekommen</translation>
    </message>
    <message>
        <source>%1 removed</source>
        <translation>%1 entfallen</translation>
    </message>
    <message>
        <source>%1 moved</source>
        <translation>%1 verschoben</translation>
    </message>
    <message>
        <source>%1 expected to differ</source>
        <translation>%1 erwartungsgemäß verschieden</translation>
    </message>
    <message>
        <source>What differs between %1 and %2</source>
        <translation>Was sich zwischen %1 und %2 unterscheidet</translation>
    </message>
    <message>
        <source>nothing</source>
        <translation>nichts</translation>
    </message>
</context>
<context>
    <name>norvex::Viewer::ComparisonModel</name>
    <message>
        <source>Item</source>
        <translation>Eintrag</translation>
    </message>
    <message>
        <source>Difference</source>
        <translation>Unterschied</translation>
    </message>
</context>
<context>
    <name>norvex::Viewer::ComparisonPage</name>
    <message>
        <source>&amp;Cancel</source>
        <translation>&amp;Abbrechen</translation>
    </message>
    <message>
        <source>Not compared</source>
        <translation>Nicht verglichen</translation>
    </message>
    <message>
        <source>The comparison was cancelled.</source>
        <translation>Der Vergleich wurde abgebrochen.</translation>
    </message>
    <message>
        <source>Comparing the reports…</source>
        <translation>Die Berichte werden verglichen …</translation>
    </message>
    <message>
        <source>&amp;Show Them</source>
        <translation>&amp;Anzeigen</translation>
    </message>
    <message>
        <source>Differences</source>
        <translation>Unterschiede</translation>
    </message>
    <message>
        <source>Old value</source>
        <translation>Alter Wert</translation>
    </message>
    <message>
        <source>New value</source>
        <translation>Neuer Wert</translation>
    </message>
    <message>
        <source>Nothing</source>
        <translation>Nichts</translation>
    </message>
    <message>
        <source>There is not enough memory to compare these reports.</source>
        <translation>Der Arbeitsspeicher reicht nicht, um diese Berichte zu vergleichen.</translation>
    </message>
    <message>
        <source>No difference</source>
        <translation>Kein Unterschied</translation>
    </message>
    <message>
        <source>Both reports say the same.</source>
        <translation>Beide Berichte sagen dasselbe.</translation>
    </message>
    <message>
        <source>Both reports say the same, apart from what differs between any two reports, such as dates and free space: %1.</source>
        <translation>Beide Berichte sagen dasselbe, bis auf das, was sich zwischen Berichten immer unterscheidet, etwa Datum und freier Platz: %1.</translation>
    </message>
    <message>
        <source>[%1 more characters]</source>
        <translation>[%1 weitere Zeichen]</translation>
    </message>
    <message>
        <source>the old report</source>
        <translation>dem alten Bericht</translation>
    </message>
    <message>
        <source>the new report</source>
        <translation>dem neuen Bericht</translation>
    </message>
    <message>
        <source>Previous</source>
        <translation>Zurück</translation>
    </message>
    <message>
        <source>Previous difference (Shift+F7)</source>
        <translation>Voriger Unterschied (Umschalt+F7)</translation>
    </message>
    <message>
        <source>Next</source>
        <translation>Weiter</translation>
    </message>
    <message>
        <source>Next difference (F7)</source>
        <translation>Nächster Unterschied (F7)</translation>
    </message>
    <message>
        <source>Previous difference</source>
        <translation>Voriger Unterschied</translation>
    </message>
    <message>
        <source>Next difference</source>
        <translation>Nächster Unterschied</translation>
    </message>
    <message>
        <source>S&amp;wap</source>
        <translation>&amp;Tauschen</translation>
    </message>
    <message>
        <source>Swap the compared reports (Ctrl+Shift+X)</source>
        <translation>Die verglichenen Berichte tauschen (Strg+Umschalt+X)</translation>
    </message>
    <message>
        <source>Swap the compared reports</source>
        <translation>Die verglichenen Berichte tauschen</translation>
    </message>
    <message>
        <source>C&amp;opy</source>
        <translation>K&amp;opieren</translation>
    </message>
    <message>
        <source>Copy the differences (Ctrl+Shift+D)</source>
        <translation>Die Unterschiede kopieren (Strg+Umschalt+D)</translation>
    </message>
    <message>
        <source>Copy the differences</source>
        <translation>Die Unterschiede kopieren</translation>
    </message>
</context>
<context>
    <name>norvex::Viewer::Document</name>
    <message>
        <source>This machine</source>
        <translation>Dieser Rechner</translation>
    </message>
    <message>
        <source>You cancelled it.</source>
        <translation>Sie haben es abgebrochen.</translation>
    </message>
    <message>
        <source>There is not enough memory for this file.</source>
        <translation>Der Arbeitsspeicher reicht nicht für diese Datei.</translation>
    </message>
    <message>
        <source>There is not enough memory for the report.</source>
        <translation>Der Arbeitsspeicher reicht nicht für den Bericht.</translation>
    </message>
    <message>
        <source>There is not enough memory to look through the text: nothing is set off.</source>
        <translation>Der Arbeitsspeicher reicht nicht, um den Text durchzusehen: Nichts ist hervorgehoben.</translation>
    </message>
    <message>
        <source>Not everything is set off: the text is too long.</source>
        <translation>Nicht alles ist hervorgehoben: Der Text ist zu lang.</translation>
    </message>
</context>
<context>
    <name>norvex::Viewer::FindBar</name>
    <message>
        <source>Match c&amp;ase</source>
        <translation>&amp;Groß- und Kleinschreibung</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Anhalten</translation>
    </message>
    <message>
        <source>Stop counting</source>
        <translation>Nicht weiter zählen</translation>
    </message>
    <message>
        <source>F&amp;ind:</source>
        <translation>&amp;Suchen:</translation>
    </message>
    <message>
        <source>Find</source>
        <translation>Suchen</translation>
    </message>
    <message>
        <source>Progress of counting</source>
        <translation>Fortschritt des Zählens</translation>
    </message>
    <message>
        <source>Previous</source>
        <translation>Zurück</translation>
    </message>
    <message>
        <source>Previous hit (Shift+F3)</source>
        <translation>Voriger Treffer (Umschalt+F3)</translation>
    </message>
    <message>
        <source>Next</source>
        <translation>Weiter</translation>
    </message>
    <message>
        <source>Next hit (F3)</source>
        <translation>Nächster Treffer (F3)</translation>
    </message>
    <message>
        <source>Close the find bar (Esc)</source>
        <translation>Suchleiste schließen (Esc)</translation>
    </message>
</context>
<context>
    <name>norvex::Viewer::IdentificationPanel</name>
    <message>
        <source>MAC addresses</source>
        <translation>MAC-Adressen</translation>
    </message>
    <message>
        <source>Number of processors</source>
        <translation>Anzahl der Prozessoren</translation>
    </message>
    <message>
        <source>Processor revision</source>
        <translation>Revision des Prozessors</translation>
    </message>
    <message>
        <source>Identification</source>
        <translation>Identifikation</translation>
    </message>
    <message>
        <source>Read from the original text, private data included.</source>
        <translation>Aus dem ursprünglichen Text gelesen, mit privaten Daten.</translation>
    </message>
    <message>
        <source>The report is being read…</source>
        <translation>Der Bericht wird gelesen …</translation>
    </message>
    <message>
        <source>No report is open.</source>
        <translation>Kein Bericht ist geöffnet.</translation>
    </message>
    <message>
        <source>No identification: %1</source>
        <translation>Keine Identifikation: %1</translation>
    </message>
    <message numerus="yes">
        <source>… and %n more</source>
        <translation>
            <numerusform>… und %n weitere</numerusform>
            <numerusform>… und %n weitere</numerusform>
        </translation>
    </message>
    <message>
        <source>none</source>
        <translation>keine</translation>
    </message>
    <message>
        <source>Skip names in &amp;braces</source>
        <translation>Namen in &amp;Klammern auslassen</translation>
    </message>
    <message>
        <source>Network interfaces with a name in braces do not count.</source>
        <translation>Netzwerkschnittstellen mit einem Namen in geschweiften Klammern zählen nicht.</translation>
    </message>
    <message>
        <source>There is no report to read from.</source>
        <translation>Es gibt keinen Bericht, aus dem sich lesen lässt.</translation>
    </message>
</context>
<context>
    <name>norvex::Viewer::InterfaceItem</name>
    <message>
        <source>up</source>
        <translation>aktiv</translation>
    </message>
    <message>
        <source>down</source>
        <translation>inaktiv</translation>
    </message>
    <message>
        <source>unknown</source>
        <translation>unbekannt</translation>
    </message>
</context>
<context>
    <name>norvex::Viewer::MachineReport</name>
    <message>
        <source>The print server does not answer: the report names no printer.</source>
        <translation>Der Druckserver antwortet nicht: Der Bericht nennt keinen Drucker.</translation>
    </message>
    <message>
        <source>There was not enough memory for the whole report.</source>
        <translation>Der Arbeitsspeicher reichte nicht für den ganzen Bericht.</translation>
    </message>
    <message>
        <source>The printers could not be asked: the report names none.</source>
        <translation>Die Drucker konnten nicht abgefragt werden: Der Bericht nennt keinen.</translation>
    </message>
    <message>
        <source>The system does not answer; the report lacks: %1.</source>
        <translation>Das System antwortet nicht; im Bericht fehlt: %1.</translation>
    </message>
    <message>
        <source>The graphics driver does not answer: the report says nothing about OpenGL.</source>
        <translation>Der Grafiktreiber antwortet nicht: Der Bericht sagt nichts über OpenGL.</translation>
    </message>
    <message>
        <source>The graphics driver could not be asked: the report says nothing about OpenGL.</source>
        <translation>Der Grafiktreiber lässt sich nicht abfragen: Der Bericht sagt nichts über OpenGL.</translation>
    </message>
</context>
<context>
    <name>norvex::Viewer::MainWindow</name>
    <message>
        <source>&amp;Overview</source>
        <translation>Ü&amp;bersicht</translation>
    </message>
    <message>
        <source>&amp;Comparison</source>
        <translation>&amp;Vergleich</translation>
    </message>
    <message>
        <source>&amp;File…</source>
        <translation>&amp;Datei …</translation>
    </message>
    <message>
        <source>Compare With an Older Report</source>
        <translation>Mit einem älteren Bericht vergleichen</translation>
    </message>
    <message>
        <source>Reports (*.txt *.json *.plist *.log);;All files (*)</source>
        <translation>Berichte (*.txt *.json *.plist *.log);;Alle Dateien (*)</translation>
    </message>
    <message>
        <source>Continued from the top.</source>
        <translation>Vom Anfang an fortgesetzt.</translation>
    </message>
    <message>
        <source>Continued from the end.</source>
        <translation>Vom Ende an fortgesetzt.</translation>
    </message>
    <message>
        <source>Stopped.</source>
        <translation>Angehalten.</translation>
    </message>
    <message>
        <source>Searching…</source>
        <translation>Suche …</translation>
    </message>
    <message>
        <source>No hit</source>
        <translation>Kein Treffer</translation>
    </message>
    <message>
        <source>Hit %1 of %2</source>
        <translation>Treffer %1 von %2</translation>
    </message>
    <message>
        <source>Hits: %1</source>
        <translation>Treffer: %1</translation>
    </message>
    <message>
        <source>%1, %2 in all tabs</source>
        <translation>%1, %2 in allen Tabs</translation>
    </message>
    <message>
        <source>Reports</source>
        <translation>Berichte</translation>
    </message>
    <message>
        <source>Identification</source>
        <translation>Identifikation</translation>
    </message>
    <message>
        <source>&amp;Open…</source>
        <translation>Ö&amp;ffnen …</translation>
    </message>
    <message>
        <source>Show &amp;This Machine</source>
        <translation>&amp;Diesen Rechner zeigen</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Datei</translation>
    </message>
    <message>
        <source>Open &amp;Recent</source>
        <translation>&amp;Zuletzt geöffnet</translation>
    </message>
    <message>
        <source>Re&amp;fresh</source>
        <translation>&amp;Aktualisieren</translation>
    </message>
    <message>
        <source>&amp;Save As…</source>
        <translation>&amp;Sichern als …</translation>
    </message>
    <message>
        <source>&amp;Export as PDF…</source>
        <translation>Als &amp;PDF exportieren …</translation>
    </message>
    <message>
        <source>&amp;Print…</source>
        <translation>D&amp;rucken …</translation>
    </message>
    <message>
        <source>&amp;Close Tab</source>
        <translation>Tab s&amp;chließen</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>&amp;Beenden</translation>
    </message>
    <message>
        <source>&amp;Edit</source>
        <translation>&amp;Bearbeiten</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Kopieren</translation>
    </message>
    <message>
        <source>Copy S&amp;ection</source>
        <translation>A&amp;bschnitt kopieren</translation>
    </message>
    <message>
        <source>Copy Whole &amp;Report</source>
        <translation>&amp;Ganzen Bericht kopieren</translation>
    </message>
    <message>
        <source>Select &amp;All</source>
        <translation>&amp;Alles auswählen</translation>
    </message>
    <message>
        <source>&amp;Find…</source>
        <translation>&amp;Suchen …</translation>
    </message>
    <message>
        <source>Find &amp;Next</source>
        <translation>&amp;Weitersuchen</translation>
    </message>
    <message>
        <source>Find &amp;Previous</source>
        <translation>&amp;Rückwärts suchen</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>&amp;Ansicht</translation>
    </message>
    <message>
        <source>&amp;Hide Private Data</source>
        <translation>&amp;Private Daten verbergen</translation>
    </message>
    <message>
        <source>Show the report without private data</source>
        <translation>Den Bericht ohne private Daten zeigen</translation>
    </message>
    <message>
        <source>Copy, Save and Print &amp;Without Private Data</source>
        <translation>&amp;Ohne private Daten kopieren, sichern und drucken</translation>
    </message>
    <message>
        <source>&amp;Identification</source>
        <translation>&amp;Identifikation</translation>
    </message>
    <message>
        <source>&amp;Zoom In</source>
        <translation>Ver&amp;größern</translation>
    </message>
    <message>
        <source>Zoom O&amp;ut</source>
        <translation>Ver&amp;kleinern</translation>
    </message>
    <message>
        <source>&amp;Normal Size</source>
        <translation>&amp;Normale Größe</translation>
    </message>
    <message>
        <source>Ne&amp;xt Tab</source>
        <translation>Nä&amp;chster Tab</translation>
    </message>
    <message>
        <source>&amp;Previous Tab</source>
        <translation>Vo&amp;riger Tab</translation>
    </message>
    <message>
        <source>Go to Sections or &amp;Text</source>
        <translation>&amp;Zwischen Abschnitten und Text wechseln</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>&amp;Hilfe</translation>
    </message>
    <message>
        <source>&amp;About</source>
        <translation>Ü&amp;ber</translation>
    </message>
    <message>
        <source>Tools</source>
        <translation>Werkzeuge</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Öffnen</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Sichern</translation>
    </message>
    <message>
        <source>Refresh</source>
        <translation>Aktualisieren</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Kopieren</translation>
    </message>
    <message>
        <source>Find</source>
        <translation>Suchen</translation>
    </message>
    <message>
        <source>Hide Private Data</source>
        <translation>Private Daten verbergen</translation>
    </message>
    <message>
        <source>Text</source>
        <translation>Text</translation>
    </message>
    <message>
        <source>Overview</source>
        <translation>Übersicht</translation>
    </message>
    <message>
        <source>Compare</source>
        <translation>Vergleichen</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>Fortschritt</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>System Information</source>
        <translation>Systeminformationen</translation>
    </message>
    <message>
        <source>%1 – System Information</source>
        <translation>%1 – Systeminformationen</translation>
    </message>
    <message>
        <source>Replacing private data…</source>
        <translation>Private Daten werden ersetzt …</translation>
    </message>
    <message>
        <source>Refreshing…</source>
        <translation>Wird aktualisiert …</translation>
    </message>
    <message>
        <source>Saving…</source>
        <translation>Wird gesichert …</translation>
    </message>
    <message>
        <source>Copied, saved and printed text has placeholders for private data.</source>
        <translation>Was Sie kopieren, sichern oder drucken, hat Platzhalter statt privater Daten.</translation>
    </message>
    <message>
        <source>Copied, saved and printed text contains private data.</source>
        <translation>Was Sie kopieren, sichern oder drucken, enthält private Daten.</translation>
    </message>
    <message>
        <source>Serial numbers, addresses, and the names of people, hosts and networks are private. The View menu decides.</source>
        <translation>Privat sind Seriennummern, Adressen und die Namen von Personen, Rechnern und Netzwerken. Im Menü „Ansicht“ stellen Sie das um.</translation>
    </message>
    <message>
        <source>Open Reports</source>
        <translation>Berichte öffnen</translation>
    </message>
    <message>
        <source>None</source>
        <translation>Keine</translation>
    </message>
    <message>
        <source>&amp;Clear</source>
        <translation>&amp;Leeren</translation>
    </message>
    <message>
        <source>About System Information</source>
        <translation>Über Systeminformationen</translation>
    </message>
    <message>
        <source>Shows system-information reports.
Version %1</source>
        <translation>Zeigt Berichte mit Systeminformationen.
Version %1</translation>
    </message>
    <message>
        <source>There is not enough memory.</source>
        <translation>Der Arbeitsspeicher reicht nicht.</translation>
    </message>
    <message>
        <source>Export With Placeholders for Private Data</source>
        <translation>Mit Platzhaltern statt privater Daten exportieren</translation>
    </message>
    <message>
        <source>Export, Private Data Included</source>
        <translation>Mit privaten Daten exportieren</translation>
    </message>
    <message>
        <source>PDF (*.pdf)</source>
        <translation>PDF (*.pdf)</translation>
    </message>
    <message>
        <source>Exporting…</source>
        <translation>Wird exportiert …</translation>
    </message>
    <message>
        <source>Exported as %1.</source>
        <translation>Als %1 exportiert.</translation>
    </message>
    <message>
        <source>The report is not exported.</source>
        <translation>Der Bericht ist nicht exportiert.</translation>
    </message>
    <message>
        <source>Print With Placeholders for Private Data</source>
        <translation>Mit Platzhaltern statt privater Daten drucken</translation>
    </message>
    <message>
        <source>Print, Private Data Included</source>
        <translation>Mit privaten Daten drucken</translation>
    </message>
    <message>
        <source>Printing…</source>
        <translation>Wird gedruckt …</translation>
    </message>
    <message>
        <source>Printed.</source>
        <translation>Gedruckt.</translation>
    </message>
    <message>
        <source>The report is not printed.</source>
        <translation>Der Bericht ist nicht gedruckt.</translation>
    </message>
    <message>
        <source>There is not enough memory to replace private data.</source>
        <translation>Der Arbeitsspeicher reicht nicht, um private Daten zu ersetzen.</translation>
    </message>
    <message>
        <source>Nothing is selected.</source>
        <translation>Nichts ist ausgewählt.</translation>
    </message>
    <message>
        <source>Copied, with placeholders for private data.</source>
        <translation>Kopiert, mit Platzhaltern statt privater Daten.</translation>
    </message>
    <message>
        <source>Copied, private data included.</source>
        <translation>Kopiert, mit privaten Daten.</translation>
    </message>
    <message>
        <source>Text (*.txt)</source>
        <translation>Text (*.txt)</translation>
    </message>
    <message>
        <source>JSON (*.json)</source>
        <translation>JSON (*.json)</translation>
    </message>
    <message>
        <source>Save With Placeholders for Private Data</source>
        <translation>Mit Platzhaltern statt privater Daten sichern</translation>
    </message>
    <message>
        <source>Save, Private Data Included</source>
        <translation>Mit privaten Daten sichern</translation>
    </message>
    <message>
        <source>Saved as %1.</source>
        <translation>Als %1 gesichert.</translation>
    </message>
    <message>
        <source>The report is not saved.</source>
        <translation>Der Bericht ist nicht gesichert.</translation>
    </message>
    <message>
        <source>Cancelled: nothing is copied or saved.</source>
        <translation>Abgebrochen: Nichts ist kopiert oder gesichert.</translation>
    </message>
    <message>
        <source>T&amp;ext</source>
        <translation>&amp;Text</translation>
    </message>
    <message>
        <source>Next &amp;Difference</source>
        <translation>Nächster &amp;Unterschied</translation>
    </message>
    <message>
        <source>Previous Di&amp;fference</source>
        <translation>Vorig&amp;er Unterschied</translation>
    </message>
    <message>
        <source>Co&amp;mpare With</source>
        <translation>&amp;Vergleichen mit</translation>
    </message>
    <message>
        <source>&amp;Swap Compared Reports</source>
        <translation>Verglichene Berichte tau&amp;schen</translation>
    </message>
    <message>
        <source>Copy &amp;Differences</source>
        <translation>&amp;Unterschiede kopieren</translation>
    </message>
    <message>
        <source>Wait until the work before is done.</source>
        <translation>Warten Sie, bis die vorige Arbeit fertig ist.</translation>
    </message>
    <message>
        <source>Copying…</source>
        <translation>Wird kopiert …</translation>
    </message>
    <message>
        <source>Cancelled: nothing is printed or copied.</source>
        <translation>Abgebrochen: Nichts ist gedruckt oder kopiert.</translation>
    </message>
    <message>
        <source>No report is open.</source>
        <translation>Kein Bericht ist geöffnet.</translation>
    </message>
    <message>
        <source>Open one, drop files here, or show this machine.</source>
        <translation>Öffnen Sie einen, ziehen Sie Dateien hierher, oder zeigen Sie diesen Rechner.</translation>
    </message>
    <message>
        <source>%1 already exists. Do you want to replace it?</source>
        <translation>%1 gibt es schon. Möchten Sie die Datei ersetzen?</translation>
    </message>
    <message>
        <source>A report is still being copied, saved or printed. Do you want to close the window all the same?</source>
        <translation>Ein Bericht wird noch kopiert, gesichert oder gedruckt. Möchten Sie das Fenster trotzdem schließen?</translation>
    </message>
    <message>
        <source>Asking the print server…</source>
        <translation>Der Druckserver wird gefragt …</translation>
    </message>
    <message>
        <source>The print server does not answer. You can export the report as PDF.</source>
        <translation>Der Druckserver antwortet nicht. Sie können den Bericht als PDF exportieren.</translation>
    </message>
    <message>
        <source>This is no regular file.</source>
        <translation>Das ist keine gewöhnliche Datei.</translation>
    </message>
</context>
<context>
    <name>norvex::Viewer::Overview</name>
    <message>
        <source>and %1 more</source>
        <translation>und %1 weitere</translation>
    </message>
    <message>
        <source>build %1</source>
        <translation>Build %1</translation>
    </message>
    <message>
        <source>System</source>
        <translation>System</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Report made</source>
        <translation>Bericht erstellt</translation>
    </message>
    <message>
        <source>Started</source>
        <translation>Gestartet</translation>
    </message>
    <message>
        <source>Processor</source>
        <translation>Prozessor</translation>
    </message>
    <message>
        <source>1 core</source>
        <translation>1 Kern</translation>
    </message>
    <message>
        <source>%1 cores</source>
        <translation>%1 Kerne</translation>
    </message>
    <message>
        <source>1 thread</source>
        <translation>1 Thread</translation>
    </message>
    <message>
        <source>%1 threads</source>
        <translation>%1 Threads</translation>
    </message>
    <message>
        <source>1 processor</source>
        <translation>1 Prozessor</translation>
    </message>
    <message>
        <source>%1 processors</source>
        <translation>%1 Prozessoren</translation>
    </message>
    <message>
        <source>Cores</source>
        <translation>Kerne</translation>
    </message>
    <message>
        <source>Memory</source>
        <translation>Arbeitsspeicher</translation>
    </message>
    <message>
        <source>L1 data</source>
        <translation>L1 Daten</translation>
    </message>
    <message>
        <source>L1 instructions</source>
        <translation>L1 Befehle</translation>
    </message>
    <message>
        <source>L2</source>
        <translation>L2</translation>
    </message>
    <message>
        <source>L3</source>
        <translation>L3</translation>
    </message>
    <message>
        <source>Caches</source>
        <translation>Caches</translation>
    </message>
    <message>
        <source>unknown card</source>
        <translation>unbekannte Karte</translation>
    </message>
    <message>
        <source>Graphics</source>
        <translation>Grafik</translation>
    </message>
    <message>
        <source>unnamed disk</source>
        <translation>unbenanntes Laufwerk</translation>
    </message>
    <message>
        <source>Disks</source>
        <translation>Laufwerke</translation>
    </message>
    <message>
        <source>%1 of %2 free</source>
        <translation>%1 von %2 frei</translation>
    </message>
    <message>
        <source>%1 free</source>
        <translation>%1 frei</translation>
    </message>
    <message>
        <source>size unknown</source>
        <translation>Größe unbekannt</translation>
    </message>
    <message>
        <source>%1 at %2×</source>
        <translation>%1 bei %2×</translation>
    </message>
    <message>
        <source>%1 inches</source>
        <translation>%1 Zoll</translation>
    </message>
    <message>
        <source>wireless</source>
        <translation>drahtlos</translation>
    </message>
    <message>
        <source>wireless, network %1</source>
        <translation>drahtlos, Netzwerk %1</translation>
    </message>
    <message>
        <source>loopback</source>
        <translation>Loopback</translation>
    </message>
</context>
<context>
    <name>norvex::Viewer::OverviewPage</name>
    <message>
        <source>Overview</source>
        <translation>Übersicht</translation>
    </message>
    <message>
        <source>There is no overview</source>
        <translation>Es gibt keine Übersicht</translation>
    </message>
    <message>
        <source>There is not enough memory to look through this report.</source>
        <translation>Der Arbeitsspeicher reicht nicht, um diesen Bericht durchzusehen.</translation>
    </message>
    <message>
        <source>Nothing is known of a machine</source>
        <translation>Über einen Rechner ist nichts bekannt</translation>
    </message>
    <message>
        <source>This text has none of the sections that the overview draws. It can be read as text.</source>
        <translation>Dieser Text hat keinen der Abschnitte, die die Übersicht zeichnet. Er lässt sich als Text lesen.</translation>
    </message>
    <message>
        <source>Unnamed machine</source>
        <translation>Rechner ohne Namen</translation>
    </message>
    <message>
        <source>The report says nothing about the machine.</source>
        <translation>Der Bericht sagt nichts über den Rechner.</translation>
    </message>
    <message>
        <source>Volumes</source>
        <translation>Volumes</translation>
    </message>
    <message>
        <source>The report does not describe volumes.</source>
        <translation>Der Bericht beschreibt keine Volumes.</translation>
    </message>
    <message>
        <source>No volume is mounted.</source>
        <translation>Kein Volume ist eingehängt.</translation>
    </message>
    <message>
        <source>Network</source>
        <translation>Netzwerk</translation>
    </message>
    <message>
        <source>The report does not describe network interfaces.</source>
        <translation>Der Bericht beschreibt keine Netzwerkschnittstellen.</translation>
    </message>
    <message>
        <source>The machine has no network interface.</source>
        <translation>Der Rechner hat keine Netzwerkschnittstelle.</translation>
    </message>
    <message>
        <source>Screens</source>
        <translation>Bildschirme</translation>
    </message>
    <message>
        <source>The report does not describe screens.</source>
        <translation>Der Bericht beschreibt keine Bildschirme.</translation>
    </message>
    <message>
        <source>No screen is attached.</source>
        <translation>Kein Bildschirm ist angeschlossen.</translation>
    </message>
    <message>
        <source>%1 more in the report</source>
        <translation>%1 weitere im Bericht</translation>
    </message>
    <message>
        <source>Looking through the report…</source>
        <translation>Der Bericht wird durchgesehen …</translation>
    </message>
</context>
<context>
    <name>norvex::Viewer::ReportTab</name>
    <message>
        <source>Sections</source>
        <translation>Abschnitte</translation>
    </message>
    <message>
        <source>Asking this machine…</source>
        <translation>Dieser Rechner wird abgefragt …</translation>
    </message>
    <message>
        <source>Reading “%1”…</source>
        <translation>„%1“ wird gelesen …</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>Fortschritt</translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation>&amp;Abbrechen</translation>
    </message>
    <message>
        <source>There is no report of this machine.</source>
        <translation>Von diesem Rechner gibt es keinen Bericht.</translation>
    </message>
    <message>
        <source>“%1” cannot be shown.</source>
        <translation>„%1“ lässt sich nicht zeigen.</translation>
    </message>
    <message>
        <source>&amp;Try Again</source>
        <translation>&amp;Noch einmal versuchen</translation>
    </message>
    <message>
        <source>There is not enough memory to replace private data. Nothing is shown.</source>
        <translation>Der Arbeitsspeicher reicht nicht, um private Daten zu ersetzen. Nichts wird gezeigt.</translation>
    </message>
    <message>
        <source>Replacing private data…</source>
        <translation>Private Daten werden ersetzt …</translation>
    </message>
    <message>
        <source>Not compared</source>
        <translation>Nicht verglichen</translation>
    </message>
    <message>
        <source>“%1” cannot be read.</source>
        <translation>„%1“ lässt sich nicht lesen.</translation>
    </message>
    <message>
        <source>The other report was closed before it was read.</source>
        <translation>Der andere Bericht wurde geschlossen, ehe er gelesen war.</translation>
    </message>
    <message>
        <source>Private data is not replaced. Nothing is shown.</source>
        <translation>Private Daten sind nicht ersetzt. Nichts wird gezeigt.</translation>
    </message>
    <message>
        <source>One of the reports has too many sections.</source>
        <translation>Einer der Berichte hat zu viele Abschnitte.</translation>
    </message>
</context>
<context>
    <name>norvex::Viewer::ReportTextView</name>
    <message>
        <source>Text of the report</source>
        <translation>Text des Berichts</translation>
    </message>
</context>
<context>
    <name>norvex::Viewer::ScreenItem</name>
    <message>
        <source>primary screen</source>
        <translation>Hauptbildschirm</translation>
    </message>
    <message>
        <source>primary</source>
        <translation>Haupt</translation>
    </message>
</context>
<context>
    <name>norvex::Viewer::SectionTitles</name>
    <message>
        <source>Version and name of the system</source>
        <translation>Version und Name des Systems</translation>
    </message>
    <message>
        <source>Kernel information</source>
        <translation>Kernel</translation>
    </message>
    <message>
        <source>Model identifier</source>
        <translation>Modellkennung</translation>
    </message>
    <message>
        <source>Architecture of the machine and of this build</source>
        <translation>Architektur des Geräts und dieses Programms</translation>
    </message>
    <message>
        <source>Processor</source>
        <translation>Prozessor</translation>
    </message>
    <message>
        <source>Memory sizes</source>
        <translation>Speichergrößen</translation>
    </message>
    <message>
        <source>AHCI disk</source>
        <translation>AHCI-Laufwerke</translation>
    </message>
    <message>
        <source>AHCI Serial ATAPI</source>
        <translation>AHCI-Laufwerke (ATAPI)</translation>
    </message>
    <message>
        <source>NVMEXpress devices</source>
        <translation>NVMe-Laufwerke</translation>
    </message>
    <message>
        <source>Volumes</source>
        <translation>Volumes</translation>
    </message>
    <message>
        <source>Ethernet interfaces</source>
        <translation>Ethernet-Schnittstellen</translation>
    </message>
    <message>
        <source>Platform info</source>
        <translation>Plattform</translation>
    </message>
    <message>
        <source>Root info</source>
        <extracomment>of the I/O registry</extracomment>
        <translation>I/O-Register</translation>
    </message>
    <message>
        <source>Graphics card info</source>
        <translation>Grafikkarten</translation>
    </message>
    <message>
        <source>Attached USB devices</source>
        <translation>Angeschlossene USB-Geräte</translation>
    </message>
    <message>
        <source>RS232 Serial Devices Info</source>
        <translation>Serielle Anschlüsse (RS-232)</translation>
    </message>
    <message>
        <source>FTDI driver</source>
        <extracomment>for adapters from USB to serial ports</extracomment>
        <translation>FTDI-Treiber</translation>
    </message>
    <message>
        <source>Version of the DNS service discovery daemon</source>
        <translation>Version des Dienstes für DNS-SD</translation>
    </message>
    <message>
        <source>Application that opens mail links</source>
        <translation>Programm für E-Mail-Links</translation>
    </message>
    <message>
        <source>Date, time and bias of the time zone</source>
        <translation>Datum, Uhrzeit und Zeitzone</translation>
    </message>
    <message>
        <source>Qt Global</source>
        <extracomment>Qt&apos;s versions, and how it is built</extracomment>
        <translation>Qt-Versionen (Qt Global)</translation>
    </message>
    <message>
        <source>QCoreApplication</source>
        <extracomment>a class of Qt: what is known of this application</extracomment>
        <translation>Programm (QCoreApplication)</translation>
    </message>
    <message>
        <source>QLocale</source>
        <extracomment>a class of Qt: country, language, units</extracomment>
        <translation>Land und Sprache (QLocale)</translation>
    </message>
    <message>
        <source>QScreen</source>
        <extracomment>a class of Qt: the screens</extracomment>
        <translation>Bildschirme (QScreen)</translation>
    </message>
    <message>
        <source>QDesktopWidget</source>
        <extracomment>a class of Qt: where the screens are</extracomment>
        <translation>Anordnung der Bildschirme (QDesktopWidget)</translation>
    </message>
    <message>
        <source>QDesktopServices</source>
        <extracomment>a class of Qt: the user&apos;s folders</extracomment>
        <translation>Ordner (QDesktopServices)</translation>
    </message>
    <message>
        <source>QPrinterInfo</source>
        <extracomment>a class of Qt: the printers</extracomment>
        <translation>Drucker (QPrinterInfo)</translation>
    </message>
    <message>
        <source>QHostInfo</source>
        <extracomment>a class of Qt: names of host and domain</extracomment>
        <translation>Rechnername (QHostInfo)</translation>
    </message>
    <message>
        <source>Network Interfaces Info</source>
        <translation>Netzwerkschnittstellen</translation>
    </message>
    <message>
        <source>System environment</source>
        <extracomment>variables</extracomment>
        <translation>Umgebungsvariablen</translation>
    </message>
    <message>
        <source>QGLFormat</source>
        <extracomment>a class of Qt: OpenGL</extracomment>
        <translation>OpenGL (QGLFormat)</translation>
    </message>
</context>
<context>
    <name>norvex::Viewer::Words</name>
    <message>
        <source>The printer cannot be used.</source>
        <translation>Der Drucker lässt sich nicht benutzen.</translation>
    </message>
    <message>
        <source>The printer did not begin page %1.</source>
        <translation>Der Drucker hat Seite %1 nicht begonnen.</translation>
    </message>
    <message>
        <source>The printer did not finish.</source>
        <translation>Der Drucker ist nicht fertig geworden.</translation>
    </message>
    <message>
        <source>Page %1 of %2</source>
        <translation>Seite %1 von %2</translation>
    </message>
</context>
</TS>
