<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
  <name>Localizable</name>
  <message><source>About Velkor Tidemark</source><translation>Über Velkor Tidemark</translation></message>
  <message><source>Finds text in many files at once and replaces it in place.</source><translation>Sucht Text in vielen Dateien auf einmal und ersetzt ihn an Ort und Stelle.</translation></message>
  <message><source>&amp;Undo</source><translation>&amp;Rückgängig</translation></message>
  <message><source>&amp;Redo</source><translation>&amp;Wiederholen</translation></message>
  <message><source>Cu&amp;t</source><translation>&amp;Ausschneiden</translation></message>
  <message><source>&amp;Copy</source><translation>&amp;Kopieren</translation></message>
  <message><source>&amp;Paste</source><translation>&amp;Einfügen</translation></message>
  <message><source>&amp;Delete</source><translation>&amp;Löschen</translation></message>
  <message><source>Select &amp;All</source><translation>Alles au&amp;swählen</translation></message>
  <message><source>Pre&amp;ferences…</source><translation>Einstellun&amp;gen …</translation></message>
  <message><source>&amp;Edit</source><translation>&amp;Bearbeiten</translation></message>
  <message><source>IDS_HelpFolder</source><translation>de</translation></message>
  <message><source>Velkor Tidemark Help</source><translation>Hilfe zu Velkor Tidemark</translation></message>
  <message><source>Not found</source><translation>Nicht gefunden</translation></message>
  <message><source>The filter is empty: no file will match.</source><translation>Der Filter ist leer: Keine Datei passt dazu.</translation></message>
  <message><source>“%@” is not a known type: no file will match.</source><translation>„%@“ ist kein bekannter Typ: Keine Datei passt dazu.</translation></message>
  <message><source>A pattern is compared with file names, which never contain “/”: no file will match.</source><translation>Ein Muster wird mit Dateinamen verglichen, die nie „/“ enthalten: Keine Datei passt dazu.</translation></message>
  <message><source>Neither a type nor a pattern: only files named exactly “%@” will match.</source><translation>Weder ein Typ noch ein Muster: Nur Dateien, die genau „%@“ heißen, passen dazu.</translation></message>
  <message><source>Filter</source><translation>Filter</translation></message>
  <message><source>Do you want to restore the original list of kinds?</source><translation>Möchten Sie die ursprüngliche Liste der Dateiarten wiederherstellen?</translation></message>
  <message><source>Kinds that you added or changed will be lost.</source><translation>Dateiarten, die Sie hinzugefügt oder geändert haben, gehen verloren.</translation></message>
  <message><source>Restore</source><translation>Wiederherstellen</translation></message>
  <message><source>Cancel</source><translation>Abbrechen</translation></message>
  <message><source>Kind</source><translation>Art</translation></message>
  <message><source>&amp;File</source><translation>&amp;Datei</translation></message>
  <message><source>&amp;New Window</source><translation>&amp;Neues Fenster</translation></message>
  <message><source>&amp;Quit</source><translation>&amp;Beenden</translation></message>
  <message><source>&amp;Search</source><translation>&amp;Suchen</translation></message>
  <message><source>&amp;Results</source><translation>&amp;Ergebnisse</translation></message>
  <message><source>&amp;Help</source><translation>&amp;Hilfe</translation></message>
  <message><source>Velkor Tidemark &amp;Help</source><translation>&amp;Hilfe zu Velkor Tidemark</translation></message>
  <message><source>Frequently Asked &amp;Questions</source><translation>Häufig gestellte &amp;Fragen</translation></message>
  <message><source>Overview for &amp;New Users</source><translation>Überblick für &amp;Einsteiger</translation></message>
  <message><source>&amp;Tidemark Home Page</source><translation>&amp;Tidemark im Web</translation></message>
  <message><source>&amp;Velkor Home Page</source><translation>&amp;Velkor im Web</translation></message>
  <message><source>&amp;About Velkor Tidemark</source><translation>&amp;Über Velkor Tidemark</translation></message>
  <message><source>Continue Replace and Don‘t Quit</source><translation>Weiter ersetzen und nicht beenden</translation></message>
  <message><source>Stop Replace and Quit</source><translation>Ersetzen anhalten und beenden</translation></message>
  <message><source>IDS_ProductVersion</source><translation>Version %@</translation></message>
  <message><source>IDS_ProductNameAndVersion</source><translation>Velkor Tidemark %@</translation></message>
  <message><source>Files in this encoding are recognised, but it cannot be the default.</source><translation>Dateien in dieser Kodierung werden erkannt, aber sie kann nicht der Standard sein.</translation></message>
  <message><source>No usable encoding is chosen: files whose encoding is not detected cannot be read.</source><translation>Es ist keine brauchbare Kodierung gewählt: Dateien, deren Kodierung nicht erkannt wird, lassen sich nicht lesen.</translation></message>
  <message><source>For files whose encoding is not detected, and for all files while detection is off.</source><translation>Für Dateien, deren Kodierung nicht erkannt wird, und für alle, solange die Erkennung aus ist.</translation></message>
  <message><source>&amp;Window</source><translation>&amp;Fenster</translation></message>
  <message><source>&amp;Minimize</source><translation>&amp;Minimieren</translation></message>
  <message><source>&amp;Zoom</source><translation>&amp;Zoomen</translation></message>
  <message><source>For assistance, please contact Velkor via the Velkor website.</source><translation>Hilfe erhalten Sie von Velkor über die Velkor-Website.</translation></message>
  <message><source>Review the regular expression in the find text field and ensure it is valid. Or uncheck the Regular expression checkbox if you want to perform a normal text search.</source><translation>Prüfen Sie, ob der reguläre Ausdruck im Feld für den Suchtext gültig ist. Oder schalten Sie „Regulärer Ausdruck“ aus, wenn Sie nach gewöhnlichem Text suchen möchten.</translation></message>
  <message><source>Review the regular expression in the find text field and ensure it is valid.  Or uncheck the Regular expression checkbox if you want to perform a normal text search.</source><translation>Prüfen Sie, ob der reguläre Ausdruck im Feld für den Suchtext gültig ist. Oder schalten Sie „Regulärer Ausdruck“ aus, wenn Sie nach gewöhnlichem Text suchen möchten.</translation></message>
  <message><source>Review the find and replace text fields and ensure they are valid. Or uncheck the Regular expression checkbox if you want to perform a normal text search.</source><translation>Prüfen Sie, ob die Felder für Suchtext und Ersetzungstext gültig sind. Oder schalten Sie „Regulärer Ausdruck“ aus, wenn Sie nach gewöhnlichem Text suchen möchten.</translation></message>
  <message><source>Review the find and replace text fields and ensure they are valid.  Or uncheck the Regular expression checkbox if you want to perform a normal text search.</source><translation>Prüfen Sie, ob die Felder für Suchtext und Ersetzungstext gültig sind. Oder schalten Sie „Regulärer Ausdruck“ aus, wenn Sie nach gewöhnlichem Text suchen möchten.</translation></message>
  <message><source>Sorry, a problem occured whilst attempting to search using the regular expression ‘%@’.</source><translation>Bei der Suche mit dem regulären Ausdruck „%@“ ist leider ein Problem aufgetreten.</translation></message>
  <message><source>The find text regular expression is malformed.</source><translation>Der reguläre Ausdruck im Suchtext ist fehlerhaft.</translation></message>
  <message><source>The find text regular expression caused an internal error.</source><translation>Der reguläre Ausdruck im Suchtext hat einen internen Fehler verursacht.</translation></message>
  <message><source>Sorry, it was not possible to search file ‘%@’.</source><translation>Die Datei „%@“ konnte leider nicht durchsucht werden.</translation></message>
  <message><source>Search results cannot be shown and replacements will not occur for this file as it contains lines of excessive length.</source><translation>Für diese Datei können keine Suchergebnisse angezeigt werden, und es wird in ihr nichts ersetzt, da sie übermäßig lange Zeilen enthält.</translation></message>
  <message><source>Sorry, a problem occured whilst attempting to open file ‘%@’.</source><translation>Beim Öffnen der Datei „%@“ ist leider ein Problem aufgetreten.</translation></message>
  <message><source>You do not have permission to open the file.</source><translation>Sie haben nicht das Recht, die Datei zu öffnen.</translation></message>
  <message><source>It is a device, a pipe or a socket, and only files can be searched.</source><translation>Es ist ein Gerät, eine Pipe oder ein Socket; durchsuchen lassen sich nur Dateien.</translation></message>
  <message><source>Error %d occured.</source><translation>Fehler %d ist aufgetreten.</translation></message>
  <message><source>Sorry, a problem occured whilst attempting to read a file.</source><translation>Beim Lesen einer Datei ist leider ein Problem aufgetreten.</translation></message>
  <message><source>The chosen character encoding ‘%@’ is unable to read the contents of the file. Check in Preferences that the default character encoding is appropriate for this file.</source><translation>In der gewählten Zeichenkodierung „%@“ lässt sich der Inhalt der Datei nicht lesen. Prüfen Sie in den Einstellungen, ob die Standardkodierung zu dieser Datei passt.</translation></message>
  <message><source>An error occurred while closing ‘%@’.</source><translation>Beim Schließen von „%@“ ist ein Fehler aufgetreten.</translation></message>
  <message><source>Sorry, a problem occured whilst attempting to modify a file.</source><translation>Beim Ändern einer Datei ist leider ein Problem aufgetreten.</translation></message>
  <message><source>Sorry, a problem occured whilst attempting to modify a file. You will need to restore the file from the automatic backup that was created.</source><translation>Beim Ändern einer Datei ist leider ein Problem aufgetreten. Sie müssen die Datei aus der automatisch angelegten Sicherungskopie wiederherstellen.</translation></message>
  <message><source>Perform the search again to refresh the search results.</source><translation>Führen Sie die Suche erneut durch, um die Suchergebnisse zu aktualisieren.</translation></message>
  <message><source>To restore the file use Finder to copy file ‘%@’ to file ‘%@’. Afterwards delete the backup file.</source><translation>Um die Datei wiederherzustellen, kopieren Sie in der Dateiverwaltung die Datei „%@“ über die Datei „%@“. Löschen Sie danach die Sicherungskopie.</translation></message>
  <message><source>Creating a temporary file for ‘%@’ was not possible due to the file permissions of the parent folder being too restrictive.</source><translation>Für „%@“ konnte keine temporäre Datei angelegt werden, da die Zugriffsrechte des übergeordneten Ordners zu streng sind.</translation></message>
  <message><source>Change permissions on the parent folder for the above mentioned file such that it is permissible to create new files in the folder.</source><translation>Ändern Sie die Zugriffsrechte des Ordners, in dem die genannte Datei liegt, so, dass darin neue Dateien angelegt werden dürfen.</translation></message>
  <message><source>Creating the temporary backup file for ‘%@’ gave error number ‘%d’.</source><translation>Das Anlegen der temporären Sicherungskopie für „%@“ ergab die Fehlernummer „%d“.</translation></message>
  <message><source>Copying file ‘%@’ to '%@' gave error number ‘%d’.</source><translation>Das Kopieren der Datei „%@“ nach „%@“ ergab die Fehlernummer „%d“.</translation></message>
  <message><source>Deleting temporary backup file ‘%@’ gave error number ‘%d’.</source><translation>Das Löschen der temporären Sicherungskopie „%@“ ergab die Fehlernummer „%d“.</translation></message>
  <message><source>The file ‘%@’ does not exist.</source><translation>Die Datei „%@“ existiert nicht.</translation></message>
  <message><source>The modification date for file ‘%@’ could not be retrieved.</source><translation>Das Änderungsdatum der Datei „%@“ konnte nicht ermittelt werden.</translation></message>
  <message><source>File ‘%@’ has been modified outside of this application.</source><translation>Die Datei „%@“ wurde außerhalb dieser Anwendung geändert.</translation></message>
  <message><source>A file handler could not be opened to truncate file ‘%@’.</source><translation>Die Datei „%@“ konnte nicht zum Kürzen geöffnet werden.</translation></message>
  <message><source>An error occured whilst truncating file‘%@’ to zero bytes.</source><translation>Beim Kürzen der Datei „%@“ auf null Byte ist ein Fehler aufgetreten.</translation></message>
  <message><source>An error occured whilst attempting to close the file handler for truncated file ‘%@’.</source><translation>Beim Schließen der gekürzten Datei „%@“ ist ein Fehler aufgetreten.</translation></message>
  <message><source>Writing data to file ‘%@’ failed with exception '%@'.</source><translation>Das Schreiben in die Datei „%@“ ist mit der Ausnahme „%@“ fehlgeschlagen.</translation></message>
  <message><source>File permissions on file ‘%@’ do not allow the file to be modified.</source><translation>Die Zugriffsrechte der Datei „%@“ erlauben es nicht, sie zu ändern.</translation></message>
  <message><source>Change permissions of the file or folder path such that it is permissible to update the file.</source><translation>Ändern Sie die Zugriffsrechte der Datei oder der Ordner auf ihrem Pfad so, dass die Datei geändert werden darf.</translation></message>
  <message><source>Sorry, a problem occured whilst attempting to replace using the find text regular expression and replace text format string.</source><translation>Beim Ersetzen mit dem regulären Ausdruck im Suchtext und der Formatvorlage im Ersetzungstext ist leider ein Problem aufgetreten.</translation></message>
  <message><source>The find text regular expression and/or replace text format string are malformed.</source><translation>Der reguläre Ausdruck im Suchtext und/oder die Formatvorlage im Ersetzungstext sind fehlerhaft.</translation></message>
  <message><source>The find text regular expression and/or replace text format string caused an internal error.</source><translation>Der reguläre Ausdruck im Suchtext und/oder die Formatvorlage im Ersetzungstext haben einen internen Fehler verursacht.</translation></message>
  <message><source>

Too many files to list.</source><translation>

Zu viele Dateien, um sie aufzuzählen.</translation></message>
  <message><source>Sorry, it was not possible to update the following files due to file permissions or locks:</source><translation>Die folgenden Dateien konnten wegen ihrer Zugriffsrechte oder Sperren leider nicht geändert werden:</translation></message>
  <message><source>Review the permissions, ownership and lock status of the above files and peform the search and replace again.</source><translation>Prüfen Sie Zugriffsrechte, Eigentümer und Sperren der genannten Dateien, und führen Sie Suchen und Ersetzen erneut durch.</translation></message>
  <message><source>IDS_Any</source><translation>Beliebige Datei</translation></message>
  <message><source>IDS_Text</source><translation>Text</translation></message>
  <message><source>IDS_Documents</source><translation>Dokumente</translation></message>
  <message><source>IDS_SourceCode</source><translation>Quelltext</translation></message>
  <message><source>IDS_WildcardSample1</source><translation>Reine Textdateien (Beispiel)</translation></message>
  <message><source>IDS_WildcardSample1Uti</source><translation>*.txt</translation></message>
  <message><source>IDS_WildcardSample2</source><translation>C-Quelltexte und -Header (Beispiel)</translation></message>
  <message><source>IDS_WildcardSample2Uti</source><translation>*.[ch]</translation></message>
  <message><source>Add Files and Folders to Search</source><translation>Zu durchsuchende Dateien und Ordner hinzufügen</translation></message>
  <message><source>Add</source><translation>Hinzufügen</translation></message>
  <message><source>, </source><translation>, </translation></message>
  <message><source>Continue Replace and Don‘t Close Window</source><translation>Weiter ersetzen und Fenster nicht schließen</translation></message>
  <message><source>Stop Replace and Close Window</source><translation>Ersetzen anhalten und Fenster schließen</translation></message>
  <message><source>Start Search</source><translation>Suche starten</translation></message>
  <message><source>Stop Search</source><translation>Suche anhalten</translation></message>
  <message><source>Locate a file or folder to search. (Cmd+O)</source><translation>Eine Datei oder einen Ordner zum Durchsuchen auswählen. (Strg+O)</translation></message>
  <message><source>Remove the selected file or folder from the search. (Cmd+P)</source><translation>Die ausgewählte Datei oder den ausgewählten Ordner von der Suche ausnehmen. (Strg+P)</translation></message>
  <message><source>Select kinds of files to include in search. (Cmd+F)</source><translation>Die Arten von Dateien auswählen, die durchsucht werden. (Strg+F)</translation></message>
  <message><source>Enter text to find</source><translation>Zu suchenden Text eingeben</translation></message>
  <message><source>Enter text that replaces the find text</source><translation>Text eingeben, der den Suchtext ersetzt</translation></message>
  <message><source>Start or stop the search. (Cmd+Enter)</source><translation>Die Suche starten oder anhalten. (Strg+Eingabe)</translation></message>
  <message><source>Check to see what each match would become in the search results. (Cmd+Shift+R)</source><translation>Ankreuzen, um in den Suchergebnissen zu sehen, was aus jedem Treffer würde. (Strg+Umschalt+R)</translation></message>
  <message><source>S&amp;how Replacements</source><translation>Ersetzungen an&amp;zeigen</translation></message>
  <message><source>Show replacements</source><translation>Ersetzungen anzeigen</translation></message>
  <message><source>Check to perform case sensitive searching. (Cmd+C)</source><translation>Ankreuzen, um Groß- und Kleinschreibung nicht zu unterscheiden. (Strg+C)</translation></message>
  <message><source>Check to use regular expressions in find text. (Cmd+G)</source><translation>Ankreuzen, um im Suchtext reguläre Ausdrücke zu verwenden. (Strg+G)</translation></message>
  <message><source>Replace the currently highlighed match in the search results with the replace text. (Cmd+R)</source><translation>Den hervorgehobenen Treffer in den Suchergebnissen durch den Ersetzungstext ersetzen. (Strg+R)</translation></message>
  <message><source>Replace the currently highlighed match in the search results with the replace text and move to the next match. (Cmd+X)</source><translation>Den hervorgehobenen Treffer in den Suchergebnissen durch den Ersetzungstext ersetzen und zum nächsten Treffer gehen. (Strg+X)</translation></message>
  <message><source>Replace the currently selected matches in the search results with the replace text. (Cmd+S)</source><translation>Die ausgewählten Treffer in den Suchergebnissen durch den Ersetzungstext ersetzen. (Strg+S)</translation></message>
  <message><source>Replace all the matches in the search results with the replace text. (Cmd+L)</source><translation>Alle Treffer in den Suchergebnissen durch den Ersetzungstext ersetzen. (Strg+L)</translation></message>
  <message><source>Highlight the previous match in the search results. (Up; Cmd+Up to move to the first match in previous file)</source><translation>Den vorherigen Treffer in den Suchergebnissen hervorheben. (Pfeil hoch; mit Strg+Pfeil hoch zum ersten Treffer der vorherigen Datei)</translation></message>
  <message><source>Highlight the next match in the search results. (Down; Cmd+Down to move to the first match in next file)</source><translation>Den nächsten Treffer in den Suchergebnissen hervorheben. (Pfeil runter; mit Strg+Pfeil runter zum ersten Treffer der nächsten Datei)</translation></message>
  <message><source>Remove selected items from search results. (Delete)</source><translation>Ausgewählte Einträge aus den Suchergebnissen entfernen. (Entf)</translation></message>
  <message><source>Expand or collapse all matches to either show or hide all matches. (Cmd+E)</source><translation>Alle Treffer auf- oder zuklappen, um sie zu zeigen oder zu verbergen. (Strg+E)</translation></message>
  <message><source>Files and folders to search</source><translation>Zu durchsuchende Dateien und Ordner</translation></message>
  <message><source>Search results showing lines of files with matches</source><translation>Suchergebnisse mit den Zeilen der Dateien, in denen es Treffer gibt</translation></message>
  <message><source> (no longer exists)</source><translation> (existiert nicht mehr)</translation></message>
  <message><source>This operation cannot easily be undone.</source><translation>Dieser Vorgang lässt sich nicht ohne Weiteres rückgängig machen.</translation></message>
  <message><source>No match is selected, so nothing will change.</source><translation>Es ist kein Treffer ausgewählt, daher ändert sich nichts.</translation></message>
  <message><source>These matches were replaced already, so nothing will change.</source><translation>Diese Treffer sind schon ersetzt, daher ändert sich nichts.</translation></message>
  <message><source>%@ in %@ will change.</source><translation>Geändert werden: %@ in %@.</translation></message>
  <message><source>Find text: ‘%@’</source><translation>Suchtext: „%@“</translation></message>
  <message><source>Replace text: ‘%@’</source><translation>Ersetzungstext: „%@“</translation></message>
  <message><source>These results were found with ‘%@’.</source><translation>Diese Ergebnisse wurden mit „%@“ gefunden.</translation></message>
  <message><source>‘%@’ was changed since the search.</source><translation>„%@“ wurde seit der Suche geändert.</translation></message>
  <message><source>Matches that the find text doesn’t fit will stay as they are.</source><translation>Treffer, zu denen der Suchtext nicht passt, bleiben, wie sie sind.</translation></message>
  <message><source>%@ match will stay as it is.</source><translation>%@ Treffer bleibt, wie er ist.</translation></message>
  <message><source>%@ matches will stay as they are.</source><translation>%@ Treffer bleiben, wie sie sind.</translation></message>
  <message><source>%lu match</source><translation>%lu Treffer</translation></message>
  <message><source>%lu matches</source><translation>%lu Treffer</translation></message>
  <message><source>%lu file</source><translation>%lu Datei</translation></message>
  <message><source>%lu files</source><translation>%lu Dateien</translation></message>
  <message><source>The replace text is empty: the matches will be deleted.</source><translation>Der Ersetzungstext ist leer: Die Treffer werden gelöscht.</translation></message>
  <message><source>Replace all selected occurrences of the find text with the replace text?</source><translation>Alle ausgewählten Vorkommen des Suchtexts durch den Ersetzungstext ersetzen?</translation></message>
  <message><source>Replace Selection</source><translation>Auswahl ersetzen</translation></message>
  <message><source>Do not show this message again</source><translation>Diese Meldung nicht mehr anzeigen</translation></message>
  <message><source>Replace all occurrences of the find text with the replace text in all files listed in the search results?</source><translation>Alle Vorkommen des Suchtexts in allen Dateien der Suchergebnisse durch den Ersetzungstext ersetzen?</translation></message>
  <message><source>Replace All</source><translation>Alle ersetzen</translation></message>
  <message><source>Open</source><translation>Öffnen</translation></message>
  <message><source>Reveal in Finder</source><translation>In der Dateiverwaltung anzeigen</translation></message>
  <message><source>Copy Line</source><translation>Zeile kopieren</translation></message>
  <message><source>Copy Path</source><translation>Pfad kopieren</translation></message>
  <message><source>Replacing: %d of %d files done</source><translation>Ersetzen: %d von %d Dateien erledigt</translation></message>
  <message><source>Undoing: %d of %d files done</source><translation>Rückgängig machen: %d von %d Dateien erledigt</translation></message>
  <message><source>Redoing: %d of %d files done</source><translation>Wiederholen: %d von %d Dateien erledigt</translation></message>
  <message><source>Replacing stopped: %@ of %@ files done</source><translation>Ersetzen angehalten: %@ von %@ Dateien erledigt</translation></message>
  <message><source>Replaced %@ match</source><translation>%@ Treffer ersetzt</translation></message>
  <message><source>Replaced %@ matches</source><translation>%@ Treffer ersetzt</translation></message>
  <message><source> in %@ file</source><translation> in %@ Datei</translation></message>
  <message><source> in %@ files</source><translation> in %@ Dateien</translation></message>
  <message><source>%@ match stayed as it was</source><translation>%@ Treffer unverändert</translation></message>
  <message><source>%@ matches stayed as they were</source><translation>%@ Treffer unverändert</translation></message>
  <message><source>%@ file failed</source><translation>%@ Datei fehlgeschlagen</translation></message>
  <message><source>Undo</source><translation>Rückgängig</translation></message>
  <message><source>Redo</source><translation>Wiederholen</translation></message>
  <message><source>Show Fai&amp;lures</source><translation>Fe&amp;hlschläge zeigen</translation></message>
  <message><source>This replacement is being undone elsewhere.</source><translation>Diese Ersetzung wird gerade anderswo rückgängig gemacht.</translation></message>
  <message><source>Redone in %@ file</source><translation>In %@ Datei wiederholt</translation></message>
  <message><source>Redone in %@ files</source><translation>In %@ Dateien wiederholt</translation></message>
  <message><source>This replacement was undone already, or isn't kept any more.</source><translation>Diese Ersetzung wurde schon rückgängig gemacht oder ist nicht mehr gespeichert.</translation></message>
  <message><source>Undo the Whole Run</source><translation>Ganzen Durchlauf rückgängig machen</translation></message>
  <message><source>Undoing the whole run puts every file that it changed (%@) back as it was before.</source><translation>Wird der ganze Durchlauf rückgängig gemacht, sind alle Dateien, die er geändert hat (%@), wieder wie zuvor.</translation></message>
  <message><source>%@ of %@ replaced</source><translation>%@ von %@ ersetzt</translation></message>
  <message><source>%@ cannot hold ‘%@’</source><translation>%@ kann „%@“ nicht darstellen</translation></message>
  <message><source>The expression takes too long to show what becomes of its matches</source><translation>Der Ausdruck braucht zu lange, um zu zeigen, was aus den Treffern wird</translation></message>
  <message><source>%@ files failed</source><translation>%@ Dateien fehlgeschlagen</translation></message>
  <message><source>Files that failed</source><translation>Fehlgeschlagene Dateien</translation></message>
  <message><source>old content in %@</source><translation>alter Inhalt in %@</translation></message>
  <message><source>%@ (%@):</source><translation>%@ (%@):</translation></message>
  <message><source>Error: %@</source><translation>Fehler: %@</translation></message>
  <message><source>Lines with matches will appear here.</source><translation>Hier erscheinen die Zeilen mit Treffern.</translation></message>
  <message><source>No matches found.
Kinds of files searched in folders: %@</source><translation>Keine Treffer gefunden.
In Ordnern durchsuchte Dateiarten: %@</translation></message>
  <message><source>Name</source><translation>Name</translation></message>
  <message><source>Matches</source><translation>Treffer</translation></message>
  <message><source>Folder</source><translation>Ordner</translation></message>
  <message><source>Generating search results…</source><translation>Suchergebnisse werden zusammengestellt …</translation></message>
  <message><source>Review search results</source><translation>Suchergebnisse durchsehen</translation></message>
  <message><source>Drop files and folders here, or press + to add them.</source><translation>Dateien und Ordner hierher ziehen oder mit + hinzufügen.</translation></message>
  <message><source>%d match found in %d file</source><translation>%d Treffer in %d Datei gefunden</translation></message>
  <message><source>%d matches found in %d files</source><translation>%d Treffer in %d Dateien gefunden</translation></message>
  <message><source>%d matches found in %d file</source><translation>%d Treffer in %d Datei gefunden</translation></message>
  <message><source> • </source><translation> • </translation></message>
  <message><source>%d files searched</source><translation>%d Dateien durchsucht</translation></message>
  <message><source>%d file searched</source><translation>%d Datei durchsucht</translation></message>
  <message><source> • Searching: %@</source><translation> • Durchsucht wird: %@</translation></message>
  <message><source>Search interrupted (</source><translation>Suche unterbrochen (</translation></message>
  <message><source>Search completed (</source><translation>Suche abgeschlossen (</translation></message>
  <message><source>%d files searched)</source><translation>%d Dateien durchsucht)</translation></message>
  <message><source>%d file searched)</source><translation>%d Datei durchsucht)</translation></message>
  <message><source>&amp;Add Files and Folders…</source><translation>Dateien und Ordner &amp;hinzufügen …</translation></message>
  <message><source>&amp;Remove from List</source><translation>Aus Liste &amp;entfernen</translation></message>
  <message><source>&amp;Close Window</source><translation>Fenster &amp;schließen</translation></message>
  <message><source>Sto&amp;p</source><translation>An&amp;halten</translation></message>
  <message><source>Ignore &amp;Case</source><translation>&amp;Groß-/Kleinschreibung ignorieren</translation></message>
  <message><source>Regular E&amp;xpression</source><translation>Regulärer A&amp;usdruck</translation></message>
  <message><source>File &amp;Types…</source><translation>Datei&amp;typen …</translation></message>
  <message><source>Context of the match</source><translation>Umgebung des Treffers</translation></message>
  <message><source>%@, line %lu</source><translation>%@, Zeile %lu</translation></message>
  <message><source>The file around the highlighted match will appear here.</source><translation>Hier erscheint die Datei rund um den hervorgehobenen Treffer.</translation></message>
  <message><source>This file has changed since it was searched.</source><translation>Diese Datei hat sich geändert, seit sie durchsucht wurde.</translation></message>
  <message><source>This is too long to be copied.</source><translation>Das ist zu lang, um kopiert zu werden.</translation></message>
  <message><source>Return opens it in %@</source><translation>Die Eingabetaste öffnet sie in %@</translation></message>
  <message><source>Return opens it with its default program</source><translation>Die Eingabetaste öffnet sie mit ihrem Standardprogramm</translation></message>
  <message><source>Show Conte&amp;xt</source><translation>&amp;Umgebung einblenden</translation></message>
  <message><source>That is only what the filter “%@” shows.</source><translation>Das betrifft nur, was der Filter „%@“ zeigt.</translation></message>
  <message><source>Export the Results That Show</source><translation>Die sichtbaren Ergebnisse exportieren</translation></message>
  <message><source>Filter results</source><translation>Ergebnisse filtern</translation></message>
  <message><source>Show only results with this text in their path or line</source><translation>Nur Ergebnisse mit diesem Text im Pfad oder in der Zeile zeigen</translation></message>
  <message><source>%@ of %@ files show</source><translation>%@ von %@ Dateien sichtbar</translation></message>
  <message><source>%@ of %@ file shows</source><translation>%@ von %@ Datei sichtbar</translation></message>
  <message><source>No result has “%@” in its path or line.</source><translation>Kein Ergebnis enthält „%@“ im Pfad oder in der Zeile.</translation></message>
  <message><source>only in the results that show</source><translation>nur in den sichtbaren Ergebnissen</translation></message>
  <message><source>Fi&amp;lter Results</source><translation>Ergebnisse &amp;filtern</translation></message>
  <message><source>While the results have the keyboard</source><translation>Mit dem Fokus in den Ergebnissen</translation></message>
  <message><source>Keyboard Shortcuts</source><translation>Tastenkürzel</translation></message>
  <message><source>&amp;Keyboard Shortcuts</source><translation>&amp;Tastenkürzel</translation></message>
  <message><source>Expand the file</source><translation>Die Datei aufklappen</translation></message>
  <message><source>Collapse the file, or go from a line to it</source><translation>Die Datei zuklappen oder von einer Zeile zu ihrer Datei gehen</translation></message>
  <message><source>First row</source><translation>Erste Zeile der Liste</translation></message>
  <message><source>Last row</source><translation>Letzte Zeile der Liste</translation></message>
  <message><source>A page up</source><translation>Eine Seite nach oben</translation></message>
  <message><source>A page down</source><translation>Eine Seite nach unten</translation></message>
  <message><source>Select the row</source><translation>Die Zeile auswählen</translation></message>
  <message><source>Select the row, or not any more</source><translation>Die Zeile auswählen oder abwählen</translation></message>
  <message><source>Select everything</source><translation>Alles auswählen</translation></message>
  <message><source>line %lu, %@: %@</source><translation>Zeile %lu, %@: %@</translation></message>
  <message><source>line %lu, match %lu of %lu: %@</source><translation>Zeile %lu, Treffer %lu von %lu: %@</translation></message>
  <message><source>%@, couldn’t be searched</source><translation>%@, konnte nicht durchsucht werden</translation></message>
  <message><source>%@, %@</source><translation>%@, %@</translation></message>
  <message><source>%@, expanded</source><translation>%@, aufgeklappt</translation></message>
  <message><source>%@, collapsed</source><translation>%@, zugeklappt</translation></message>
  <message><source>S&amp;witch between Form, Results and Context</source><translation>&amp;Wechseln zwischen Formular, Ergebnissen und Umgebung</translation></message>
  <message><source>&amp;Next Match</source><translation>&amp;Nächster Treffer</translation></message>
  <message><source>&amp;Previous Match</source><translation>&amp;Vorheriger Treffer</translation></message>
  <message><source>Export Results</source><translation>Ergebnisse exportieren</translation></message>
  <message><source>&amp;Export Results…</source><translation>Ergebnisse e&amp;xportieren …</translation></message>
  <message><source>Text (*.txt)</source><translation>Text (*.txt)</translation></message>
  <message><source>CSV (*.csv)</source><translation>CSV (*.csv)</translation></message>
  <message><source>JSON Lines (*.jsonl)</source><translation>JSON Lines (*.jsonl)</translation></message>
  <message><source>Markdown (*.md)</source><translation>Markdown (*.md)</translation></message>
  <message><source>Writing results…</source><translation>Ergebnisse werden geschrieben …</translation></message>
  <message><source>The results could not be written to ‘%@’.</source><translation>Die Ergebnisse konnten nicht nach „%@“ geschrieben werden.</translation></message>
  <message><source>Copy As</source><translation>Kopieren als</translation></message>
  <message><source>Path, Line, Column and Text</source><translation>Pfad, Zeile, Spalte und Text</translation></message>
  <message><source>Paths Only</source><translation>Nur Pfade</translation></message>
  <message><source>Markdown</source><translation>Markdown</translation></message>
  <message><source>&amp;Editor</source><translation>&amp;Editor</translation></message>
  <message><source>&amp;Open a match with:</source><translation>Treffer ö&amp;ffnen mit:</translation></message>
  <message><source>Command of the editor</source><translation>Befehl des Editors</translation></message>
  <message><source>editor +%l:%c %f</source><translation>editor +%l:%c %f</translation></message>
  <message><source>In a command of your own %f stands for the file, %l for the line and %c for the column. Words with blanks are put in double quotes. Return or a double click on a line of the results opens it.</source><translation>In einem eigenen Befehl steht %f für die Datei, %l für die Zeile und %c für die Spalte. Wörter mit Leerzeichen gehören in gerade doppelte Anführungszeichen. Die Eingabetaste oder ein Doppelklick auf eine Zeile der Ergebnisse öffnet die Fundstelle.</translation></message>
  <message><source>The desktop's default program, at the beginning</source><translation>Standardprogramm des Desktops (am Dateianfang)</translation></message>
  <message><source>A command of my own</source><translation>Ein eigener Befehl</translation></message>
  <message><source>Open at Match</source><translation>An der Fundstelle öffnen</translation></message>
  <message><source>The name of the file can't be handed over to another program, or no command is set.</source><translation>Der Dateiname kann keinem anderen Programm übergeben werden, oder es ist kein Befehl eingestellt.</translation></message>
  <message><source>The editor could not be started with “%@”. Choose another one in Preferences.</source><translation>Der Editor konnte mit „%@“ nicht gestartet werden. Wählen Sie in den Einstellungen einen anderen.</translation></message>
  <message><source>The desktop has no program to open “%@” with.</source><translation>Der Desktop hat kein Programm, um „%@“ zu öffnen.</translation></message>
  <message><source>You can undo this with Edit &gt; Undo.</source><translation>Sie können dies mit Bearbeiten &gt; Rückgängig zurücknehmen.</translation></message>
  <message><source>&amp;Undo Replacing</source><translation>Ersetzen &amp;rückgängig machen</translation></message>
  <message><source>&amp;Undo Replacing in %@ File</source><translation>Ersetzen in %@ Datei &amp;rückgängig machen</translation></message>
  <message><source>&amp;Undo Replacing in %@ Files</source><translation>Ersetzen in %@ Dateien &amp;rückgängig machen</translation></message>
  <message><source>&amp;Redo Replacing</source><translation>Ersetzen &amp;wiederholen</translation></message>
  <message><source>&amp;Redo Replacing in %@ File</source><translation>Ersetzen in %@ Datei &amp;wiederholen</translation></message>
  <message><source>&amp;Redo Replacing in %@ Files</source><translation>Ersetzen in %@ Dateien &amp;wiederholen</translation></message>
  <message><source>%@ file is as it was before</source><translation>%@ Datei wieder wie zuvor</translation></message>
  <message><source>%@ files are as they were before</source><translation>%@ Dateien wieder wie zuvor</translation></message>
  <message><source>Stopped</source><translation>Angehalten</translation></message>
  <message><source>What was noted of this replacement can't be read any more.</source><translation>Die Aufzeichnungen über diese Ersetzung sind nicht mehr lesbar.</translation></message>
  <message><source>&amp;History of Replacements…</source><translation>Ersetzungs&amp;verlauf …</translation></message>
  <message><source>Delete &amp;Backups…</source><translation>&amp;Sicherungskopien löschen …</translation></message>
  <message><source>In use</source><translation>In Arbeit</translation></message>
  <message><source>Undone</source><translation>Rückgängig gemacht</translation></message>
  <message><source>Done</source><translation>Ausgeführt</translation></message>
  <message><source>&amp;Forget</source><translation>&amp;Vergessen</translation></message>
  <message><source>History of Replacements</source><translation>Ersetzungsverlauf</translation></message>
  <message><source>When</source><translation>Wann</translation></message>
  <message><source>Find → Replace</source><translation>Suchen → Ersetzen</translation></message>
  <message><source>Files</source><translation>Dateien</translation></message>
  <message><source>Size</source><translation>Größe</translation></message>
  <message><source>State</source><translation>Zustand</translation></message>
  <message><source>A file that was changed since isn't touched. What is forgotten can't be taken back.</source><translation>Eine Datei, die seither geändert wurde, bleibt unberührt. Was vergessen wird, kann nicht mehr zurückgenommen werden.</translation></message>
  <message><source>&amp;Delete Ticked</source><translation>Angekreuzte &amp;löschen</translation></message>
  <message><source>Delete Backups</source><translation>Sicherungskopien löschen</translation></message>
  <message><source>Backup</source><translation>Sicherungskopie</translation></message>
  <message><source>A backup that was changed, or isn't the one that was made, stays where it is.</source><translation>Eine Sicherungskopie, die geändert wurde oder nicht die ursprünglich angelegte ist, bleibt, wo sie ist.</translation></message>
  <message><source>%@ backups deleted.</source><translation>%@ Sicherungskopien gelöscht.</translation></message>
  <message><source>%@ were not, as they were changed or are not permitted to go: %@</source><translation>%@ nicht, da sie geändert wurden oder nicht gelöscht werden dürfen: %@</translation></message>
  <message><source>E&amp;xtend to Next Match</source><translation>Auswahl bis zum nächsten Treffer er&amp;weitern</translation></message>
  <message><source>Extend &amp;to Previous Match</source><translation>Auswahl bis zum vorherigen &amp;Treffer erweitern</translation></message>
  <message><source>First Match in Next &amp;File</source><translation>Erster Treffer der nächsten &amp;Datei</translation></message>
  <message><source>First Match in Pre&amp;vious File</source><translation>Erster Treffer der v&amp;orherigen Datei</translation></message>
  <message><source>&amp;Expand or Collapse All</source><translation>Alle auf- oder &amp;zuklappen</translation></message>
  <message><source>Re&amp;move Selected from Results</source><translation>Auswahl aus Ergebnissen ent&amp;fernen</translation></message>
  <message><source>&amp;Replace</source><translation>&amp;Ersetzen</translation></message>
  <message><source>Replace an&amp;d Find</source><translation>Ersetzen und &amp;weitersuchen</translation></message>
  <message><source>Replace &amp;Selection…</source><translation>&amp;Auswahl ersetzen …</translation></message>
  <message><source>Replace &amp;All…</source><translation>A&amp;lle ersetzen …</translation></message>
  <message><source>Do you want to stop the replace that is in progress?</source><translation>Möchten Sie das laufende Ersetzen anhalten?</translation></message>
  <message><source>Stopping a replace before it finishes will leave files in an unknown state.</source><translation>Wird das Ersetzen vorzeitig angehalten, bleiben Dateien in einem unbekannten Zustand.</translation></message>
  <message><source>%@ no longer exists</source><translation>%@ existiert nicht mehr</translation></message>
  <message><source>Subfolders</source><translation>Unterordner</translation></message>
  <message><source>Tick to search the folders inside this folder, too</source><translation>Ankreuzen, um auch die Ordner in diesem Ordner zu durchsuchen</translation></message>
  <message><source>Location</source><translation>Ort</translation></message>
  <message><source>Search &amp;in</source><translation>Suchen &amp;in</translation></message>
  <message><source>+</source><translation>+</translation></message>
  <message><source>Add files and folders</source><translation>Dateien und Ordner hinzufügen</translation></message>
  <message><source>–</source><translation>–</translation></message>
  <message><source>Remove location</source><translation>Ort entfernen</translation></message>
  <message><source>Fin&amp;d</source><translation>Su&amp;chen</translation></message>
  <message><source>Find</source><translation>Suchen</translation></message>
  <message><source>Re&amp;place</source><translation>E&amp;rsetzen</translation></message>
  <message><source>Replace</source><translation>Ersetzen</translation></message>
  <message><source>Ignore &amp;case</source><translation>&amp;Groß/klein ignorieren</translation></message>
  <message><source>Regular e&amp;xpression</source><translation>Regulärer A&amp;usdruck</translation></message>
  <message><source>Searching</source><translation>Suche läuft</translation></message>
  <message><source>Search results</source><translation>Suchergebnisse</translation></message>
  <message><source>Previous</source><translation>Vorheriger</translation></message>
  <message><source>Previous match</source><translation>Vorheriger Treffer</translation></message>
  <message><source>Next</source><translation>Nächster</translation></message>
  <message><source>Next match</source><translation>Nächster Treffer</translation></message>
  <message><source>Expand/Collapse</source><translation>Auf-/Zuklappen</translation></message>
  <message><source>Expand or collapse all</source><translation>Alle auf- oder zuklappen</translation></message>
  <message><source>Remove</source><translation>Entfernen</translation></message>
  <message><source>Remove selected results</source><translation>Ausgewählte Ergebnisse entfernen</translation></message>
  <message><source>Files replaced</source><translation>Dateien, in denen ersetzt wurde</translation></message>
  <message><source>Stop Replace</source><translation>Ersetzen anhalten</translation></message>
  <message><source>Replace and Fi&amp;nd</source><translation>Ersetzen und &amp;weitersuchen</translation></message>
  <message><source>Replace Se&amp;lection…</source><translation>&amp;Auswahl ersetzen …</translation></message>
  <message><source>Preferences</source><translation>Einstellungen</translation></message>
  <message><source>&amp;General</source><translation>&amp;Allgemein</translation></message>
  <message><source>Reading files</source><translation>Beim Lesen</translation></message>
  <message><source>&amp;Detect the encoding of each file</source><translation>Die Kodierung jeder Datei e&amp;rkennen</translation></message>
  <message><source>&amp;Larger Text</source><translation>&amp;Größere Schrift</translation></message>
  <message><source>Smaller Te&amp;xt</source><translation>Kleinere Sch&amp;rift</translation></message>
  <message><source>Standard Text Si&amp;ze</source><translation>Standard&amp;größe</translation></message>
  <message><source>Add Folder…</source><translation>Ordner hinzufügen …</translation></message>
  <message><source>Drop to search here</source><translation>Ablegen, um hier zu suchen</translation></message>
  <message><source>Add a folder or a file to search first.</source><translation>Zuerst einen Ordner oder eine Datei hinzufügen, in denen gesucht wird.</translation></message>
  <message><source>Type what to find first.</source><translation>Geben Sie zuerst ein, was gesucht werden soll.</translation></message>
  <message><source>Free software under the BSD 2-Clause License.</source><translation>Freie Software unter der BSD-2-Klausel-Lizenz.</translation></message>
  <message><source>Built with %@.</source><translation>Gebaut mit %@.</translation></message>
  <message><source>Default &amp;encoding</source><translation>Standard&amp;kodierung</translation></message>
  <message><source>Default encoding</source><translation>Standardkodierung</translation></message>
  <message><source>Replacing</source><translation>Beim Ersetzen</translation></message>
  <message><source>Make a &amp;backup of each file before it is changed</source><translation>Jede Datei &amp;sichern, bevor sie geändert wird</translation></message>
  <message><source>Backups lie beside their files; “.TDMBackup.” stands in their names.</source><translation>Sicherungskopien liegen neben ihren Dateien und haben „.TDMBackup.“ im Namen.</translation></message>
  <message><source>Histories</source><translation>Verlauf</translation></message>
  <message><source>Find and replace texts to &amp;remember</source><translation>An&amp;zahl gemerkter Such- und Ersetzungstexte</translation></message>
  <message><source>Find and replace texts to remember</source><translation>Anzahl gemerkter Such- und Ersetzungstexte</translation></message>
  <message><source>File &amp;types</source><translation>&amp;Dateitypen</translation></message>
  <message><source>&amp;Kinds of files that are searched in folders</source><translation>Arten von Dateien, die in &amp;Ordnern durchsucht werden</translation></message>
  <message><source>Kinds of files that are searched in folders</source><translation>Arten von Dateien, die in Ordnern durchsucht werden</translation></message>
  <message><source>&amp;Add</source><translation>&amp;Hinzufügen</translation></message>
  <message><source>Add a kind below the selected one (Insert)</source><translation>Unter der ausgewählten Art eine neue hinzufügen (Einfg)</translation></message>
  <message><source>D&amp;uplicate</source><translation>D&amp;uplizieren</translation></message>
  <message><source>Add a copy of the selected kind (Ctrl+D)</source><translation>Eine Kopie der ausgewählten Art hinzufügen (Strg+D)</translation></message>
  <message><source>&amp;Remove</source><translation>&amp;Entfernen</translation></message>
  <message><source>Remove the selected kind (Delete)</source><translation>Die ausgewählte Art entfernen (Entf)</translation></message>
  <message><source>Move U&amp;p</source><translation>Nach o&amp;ben</translation></message>
  <message><source>Move the selected kind up (Alt+Up)</source><translation>Die ausgewählte Art nach oben verschieben (Alt+Pfeil hoch)</translation></message>
  <message><source>Move Do&amp;wn</source><translation>Nach u&amp;nten</translation></message>
  <message><source>Move the selected kind down (Alt+Down)</source><translation>Die ausgewählte Art nach unten verschieben (Alt+Pfeil runter)</translation></message>
  <message><source>Restore &amp;List…</source><translation>&amp;Liste wiederherstellen …</translation></message>
  <message><source>Restore the original list of kinds</source><translation>Die ursprüngliche Liste der Dateiarten wiederherstellen</translation></message>
  <message><source>Remark on the selected kind</source><translation>Bemerkung zur ausgewählten Art</translation></message>
  <message><source>A filter is a pattern for file names, such as *.txt, or a type, such as uti:public.text. Files that match any ticked kind are searched.</source><translation>Ein Filter ist ein Muster für Dateinamen wie *.txt oder ein Typ wie uti:public.text. Durchsucht werden Dateien, zu denen eine der angekreuzten Arten passt.</translation></message>
  <message><source>&amp;Close</source><translation>S&amp;chließen</translation></message>
  <message><source>Western (Mac OS Roman)</source><translation>Westlich (Mac OS Roman)</translation></message>
  <message><source>Greek (Mac OS)</source><translation>Griechisch (Mac OS)</translation></message>
  <message><source>Cyrillic (Mac OS)</source><translation>Kyrillisch (Mac OS)</translation></message>
  <message><source>Central European (Mac OS)</source><translation>Mitteleuropäisch (Mac OS)</translation></message>
  <message><source>Turkish (Mac OS)</source><translation>Türkisch (Mac OS)</translation></message>
  <message><source>Cyrillic (Mac OS Ukrainian)</source><translation>Kyrillisch (Mac OS, ukrainisch)</translation></message>
  <message><source>Unicode (UTF-16)</source><translation>Unicode (UTF-16)</translation></message>
  <message><source>Unicode (UTF-7)</source><translation>Unicode (UTF-7)</translation></message>
  <message><source>Unicode (UTF-8)</source><translation>Unicode (UTF-8)</translation></message>
  <message><source>Unicode (UTF-32)</source><translation>Unicode (UTF-32)</translation></message>
  <message><source>Unicode (UTF-16BE)</source><translation>Unicode (UTF-16BE)</translation></message>
  <message><source>Unicode (UTF-16LE)</source><translation>Unicode (UTF-16LE)</translation></message>
  <message><source>Unicode (UTF-32BE)</source><translation>Unicode (UTF-32BE)</translation></message>
  <message><source>Unicode (UTF-32LE)</source><translation>Unicode (UTF-32LE)</translation></message>
  <message><source>Western (ISO Latin 1)</source><translation>Westlich (ISO Latin 1)</translation></message>
  <message><source>Central European (ISO Latin 2)</source><translation>Mitteleuropäisch (ISO Latin 2)</translation></message>
  <message><source>Western (ISO Latin 3)</source><translation>Westlich (ISO Latin 3)</translation></message>
  <message><source>Central European (ISO Latin 4)</source><translation>Mitteleuropäisch (ISO Latin 4)</translation></message>
  <message><source>Cyrillic (ISO 8859-5)</source><translation>Kyrillisch (ISO 8859-5)</translation></message>
  <message><source>Arabic (ISO 8859-6)</source><translation>Arabisch (ISO 8859-6)</translation></message>
  <message><source>Greek (ISO 8859-7)</source><translation>Griechisch (ISO 8859-7)</translation></message>
  <message><source>Hebrew (ISO 8859-8)</source><translation>Hebräisch (ISO 8859-8)</translation></message>
  <message><source>Turkish (ISO Latin 5)</source><translation>Türkisch (ISO Latin 5)</translation></message>
  <message><source>Nordic (ISO Latin 6)</source><translation>Nordisch (ISO Latin 6)</translation></message>
  <message><source>Thai (ISO 8859-11)</source><translation>Thailändisch (ISO 8859-11)</translation></message>
  <message><source>Baltic (ISO Latin 7)</source><translation>Baltisch (ISO Latin 7)</translation></message>
  <message><source>Celtic (ISO Latin 8)</source><translation>Keltisch (ISO Latin 8)</translation></message>
  <message><source>Western (ISO Latin 9)</source><translation>Westlich (ISO Latin 9)</translation></message>
  <message><source>Latin-US (DOS)</source><translation>Lateinisch-US (DOS)</translation></message>
  <message><source>Greek (DOS)</source><translation>Griechisch (DOS)</translation></message>
  <message><source>Baltic (DOS)</source><translation>Baltisch (DOS)</translation></message>
  <message><source>Western (DOS Latin 1)</source><translation>Westlich (DOS Latin 1)</translation></message>
  <message><source>Greek (DOS Greek 1)</source><translation>Griechisch (DOS Griechisch 1)</translation></message>
  <message><source>Central European (DOS Latin 2)</source><translation>Mitteleuropäisch (DOS Latin 2)</translation></message>
  <message><source>Cyrillic (DOS)</source><translation>Kyrillisch (DOS)</translation></message>
  <message><source>Turkish (DOS)</source><translation>Türkisch (DOS)</translation></message>
  <message><source>Portuguese (DOS)</source><translation>Portugiesisch (DOS)</translation></message>
  <message><source>Icelandic (DOS)</source><translation>Isländisch (DOS)</translation></message>
  <message><source>Hebrew (DOS)</source><translation>Hebräisch (DOS)</translation></message>
  <message><source>Canadian French (DOS)</source><translation>Kanadisches Französisch (DOS)</translation></message>
  <message><source>Arabic (DOS)</source><translation>Arabisch (DOS)</translation></message>
  <message><source>Nordic (DOS)</source><translation>Nordisch (DOS)</translation></message>
  <message><source>Russian (DOS)</source><translation>Russisch (DOS)</translation></message>
  <message><source>Greek (DOS Greek 2)</source><translation>Griechisch (DOS Griechisch 2)</translation></message>
  <message><source>Thai (Windows, DOS)</source><translation>Thailändisch (Windows, DOS)</translation></message>
  <message><source>Japanese (Windows, DOS)</source><translation>Japanisch (Windows, DOS)</translation></message>
  <message><source>Simplified Chinese (Windows, DOS)</source><translation>Vereinfachtes Chinesisch (Windows, DOS)</translation></message>
  <message><source>Korean (Windows, DOS)</source><translation>Koreanisch (Windows, DOS)</translation></message>
  <message><source>Traditional Chinese (Windows, DOS)</source><translation>Traditionelles Chinesisch (Windows, DOS)</translation></message>
  <message><source>Western (Windows Latin 1)</source><translation>Westlich (Windows Latin 1)</translation></message>
  <message><source>Central European (Windows Latin 2)</source><translation>Mitteleuropäisch (Windows Latin 2)</translation></message>
  <message><source>Cyrillic (Windows)</source><translation>Kyrillisch (Windows)</translation></message>
  <message><source>Greek (Windows)</source><translation>Griechisch (Windows)</translation></message>
  <message><source>Turkish (Windows Latin 5)</source><translation>Türkisch (Windows Latin 5)</translation></message>
  <message><source>Hebrew (Windows)</source><translation>Hebräisch (Windows)</translation></message>
  <message><source>Arabic (Windows)</source><translation>Arabisch (Windows)</translation></message>
  <message><source>Baltic (Windows)</source><translation>Baltisch (Windows)</translation></message>
  <message><source>Vietnamese (Windows)</source><translation>Vietnamesisch (Windows)</translation></message>
  <message><source>Western (ASCII)</source><translation>Westlich (ASCII)</translation></message>
  <message><source>Chinese (GBK)</source><translation>Chinesisch (GBK)</translation></message>
  <message><source>Chinese (GB 18030)</source><translation>Chinesisch (GB 18030)</translation></message>
  <message><source>Japanese (ISO 2022-JP)</source><translation>Japanisch (ISO 2022-JP)</translation></message>
  <message><source>Japanese (ISO 2022-JP-2)</source><translation>Japanisch (ISO 2022-JP-2)</translation></message>
  <message><source>Japanese (ISO 2022-JP-1)</source><translation>Japanisch (ISO 2022-JP-1)</translation></message>
  <message><source>Chinese (ISO 2022-CN)</source><translation>Chinesisch (ISO 2022-CN)</translation></message>
  <message><source>Korean (ISO 2022-KR)</source><translation>Koreanisch (ISO 2022-KR)</translation></message>
  <message><source>Japanese (EUC)</source><translation>Japanisch (EUC)</translation></message>
  <message><source>Simplified Chinese (GB 2312)</source><translation>Vereinfachtes Chinesisch (GB 2312)</translation></message>
  <message><source>Traditional Chinese (EUC)</source><translation>Traditionelles Chinesisch (EUC)</translation></message>
  <message><source>Korean (EUC)</source><translation>Koreanisch (EUC)</translation></message>
  <message><source>Japanese (Shift JIS)</source><translation>Japanisch (Shift JIS)</translation></message>
  <message><source>Cyrillic (KOI8-R)</source><translation>Kyrillisch (KOI8-R)</translation></message>
  <message><source>Traditional Chinese (Big 5)</source><translation>Traditionelles Chinesisch (Big 5)</translation></message>
  <message><source>Simplified Chinese (HZ GB 2312)</source><translation>Vereinfachtes Chinesisch (HZ GB 2312)</translation></message>
  <message><source>Traditional Chinese (Big 5 HKSCS)</source><translation>Traditionelles Chinesisch (Big 5 HKSCS)</translation></message>
  <message><source>Ukrainian (KOI8-U)</source><translation>Ukrainisch (KOI8-U)</translation></message>
  <message><source>Japanese (Mac OS)</source><translation>Japanisch (Mac OS)</translation></message>
  <message><source>Traditional Chinese (Mac OS)</source><translation>Traditionelles Chinesisch (Mac OS)</translation></message>
  <message><source>Korean (Mac OS)</source><translation>Koreanisch (Mac OS)</translation></message>
  <message><source>Arabic (Mac OS)</source><translation>Arabisch (Mac OS)</translation></message>
  <message><source>Hebrew (Mac OS)</source><translation>Hebräisch (Mac OS)</translation></message>
  <message><source>Devanagari (Mac OS)</source><translation>Devanagari (Mac OS)</translation></message>
  <message><source>Gurmukhi (Mac OS)</source><translation>Gurmukhi (Mac OS)</translation></message>
  <message><source>Gujarati (Mac OS)</source><translation>Gujarati (Mac OS)</translation></message>
  <message><source>Thai (Mac OS)</source><translation>Thailändisch (Mac OS)</translation></message>
  <message><source>Simplified Chinese (Mac OS)</source><translation>Vereinfachtes Chinesisch (Mac OS)</translation></message>
  <message><source>Tibetan (Mac OS)</source><translation>Tibetisch (Mac OS)</translation></message>
  <message><source>Symbol (Mac OS)</source><translation>Symbole (Mac OS)</translation></message>
  <message><source>Dingbats (Mac OS)</source><translation>Dingbats (Mac OS)</translation></message>
  <message><source>Croatian (Mac OS)</source><translation>Kroatisch (Mac OS)</translation></message>
  <message><source>Icelandic (Mac OS)</source><translation>Isländisch (Mac OS)</translation></message>
  <message><source>Romanian (Mac OS)</source><translation>Rumänisch (Mac OS)</translation></message>
  <message><source>Celtic (Mac OS)</source><translation>Keltisch (Mac OS)</translation></message>
  <message><source>Gaelic (Mac OS)</source><translation>Gälisch (Mac OS)</translation></message>
  <message><source>Keyboard Symbols (Mac OS)</source><translation>Tastatursymbole (Mac OS)</translation></message>
  <message><source>Farsi (Mac OS)</source><translation>Persisch (Mac OS)</translation></message>
  <message><source>Inuit (Mac OS)</source><translation>Inuit (Mac OS)</translation></message>
  <message><source>Romanian (ISO Latin 10)</source><translation>Rumänisch (ISO Latin 10)</translation></message>
  <message><source>Japanese (Shift JIS X0213)</source><translation>Japanisch (Shift JIS X0213)</translation></message>
  <message><source>Western (Mac Mail)</source><translation>Westlich (Mac Mail)</translation></message>
  <message><source>Traditional Chinese (Big 5-E)</source><translation>Traditionelles Chinesisch (Big 5-E)</translation></message>
  <message><source>Western (NextStep)</source><translation>Westlich (NextStep)</translation></message>
  <message><source>Western (EBCDIC Latin Core)</source><translation>Westlich (EBCDIC, lateinischer Kern)</translation></message>
  <message><source>Oriya (Mac OS)</source><translation>Oriya (Mac OS)</translation></message>
  <message><source>Bengali (Mac OS)</source><translation>Bengalisch (Mac OS)</translation></message>
  <message><source>Tamil (Mac OS)</source><translation>Tamil (Mac OS)</translation></message>
  <message><source>Telugu (Mac OS)</source><translation>Telugu (Mac OS)</translation></message>
  <message><source>Kannada (Mac OS)</source><translation>Kannada (Mac OS)</translation></message>
  <message><source>Malayalam (Mac OS)</source><translation>Malayalam (Mac OS)</translation></message>
  <message><source>Sinhalese (Mac OS)</source><translation>Singhalesisch (Mac OS)</translation></message>
  <message><source>Burmese (Mac OS)</source><translation>Birmanisch (Mac OS)</translation></message>
  <message><source>Khmer (Mac OS)</source><translation>Khmer (Mac OS)</translation></message>
  <message><source>Laotian (Mac OS)</source><translation>Laotisch (Mac OS)</translation></message>
  <message><source>Georgian (Mac OS)</source><translation>Georgisch (Mac OS)</translation></message>
  <message><source>Armenian (Mac OS)</source><translation>Armenisch (Mac OS)</translation></message>
  <message><source>Mongolian (Mac OS)</source><translation>Mongolisch (Mac OS)</translation></message>
  <message><source>Ethiopic (Mac OS)</source><translation>Äthiopisch (Mac OS)</translation></message>
  <message><source>Vietnamese (Mac OS)</source><translation>Vietnamesisch (Mac OS)</translation></message>
  <message><source>Extended Arabic (Mac OS)</source><translation>Erweitertes Arabisch (Mac OS)</translation></message>
  <message><source>VT100 (Mac OS)</source><translation>VT100 (Mac OS)</translation></message>
  <message><source>Korean (Windows Johab)</source><translation>Koreanisch (Windows Johab)</translation></message>
  <message><source>Western (ANSEL)</source><translation>Westlich (ANSEL)</translation></message>
  <message><source>Japanese (JIS X 0201)</source><translation>Japanisch (JIS X 0201)</translation></message>
  <message><source>Japanese (JIS X 0208, 1983)</source><translation>Japanisch (JIS X 0208, 1983)</translation></message>
  <message><source>Japanese (JIS X 0208, 1990)</source><translation>Japanisch (JIS X 0208, 1990)</translation></message>
  <message><source>Japanese (JIS X 0212)</source><translation>Japanisch (JIS X 0212)</translation></message>
  <message><source>Japanese (JIS C 6226)</source><translation>Japanisch (JIS C 6226)</translation></message>
  <message><source>Japanese (JIS X 0213, row and cell)</source><translation>Japanisch (JIS X 0213, Zeile und Zelle)</translation></message>
  <message><source>Simplified Chinese (GB 2312-80)</source><translation>Vereinfachtes Chinesisch (GB 2312-80)</translation></message>
  <message><source>Korean (KS C 5601, 1987)</source><translation>Koreanisch (KS C 5601, 1987)</translation></message>
  <message><source>Korean (Johab)</source><translation>Koreanisch (Johab)</translation></message>
  <message><source>Traditional Chinese (CNS 11643, plane 1)</source><translation>Traditionelles Chinesisch (CNS 11643, Ebene 1)</translation></message>
  <message><source>Traditional Chinese (CNS 11643, plane 2)</source><translation>Traditionelles Chinesisch (CNS 11643, Ebene 2)</translation></message>
  <message><source>Traditional Chinese (CNS 11643, plane 3)</source><translation>Traditionelles Chinesisch (CNS 11643, Ebene 3)</translation></message>
  <message><source>Japanese (ISO 2022-JP-3)</source><translation>Japanisch (ISO 2022-JP-3)</translation></message>
  <message><source>Chinese (ISO 2022-CN-EXT)</source><translation>Chinesisch (ISO 2022-CN-EXT)</translation></message>
  <message><source>Vietnamese (VISCII)</source><translation>Vietnamesisch (VISCII)</translation></message>
  <message><source>Unicode (UTF-7 for mailboxes)</source><translation>Unicode (UTF-7 für Postfächer)</translation></message>
  <message><source>Japanese (NextStep)</source><translation>Japanisch (NextStep)</translation></message>
  <message><source>Non-lossy ASCII</source><translation>Verlustfreies ASCII</translation></message>
  <message><source>Western (EBCDIC Latin 1)</source><translation>Westlich (EBCDIC Latin 1)</translation></message>
  <message><source>… and %d more</source><translation>… und %d weitere</translation></message>
  <message><source>%@
    old content: %@
</source><translation>%@
    alter Inhalt: %@
</translation></message>
  <message><source>%@: %@
    old content: %@
</source><translation>%@: %@
    alter Inhalt: %@
</translation></message>
  <message><source>The old content of some files could not be put back.</source><translation>Der alte Inhalt einiger Dateien konnte nicht wiederhergestellt werden.</translation></message>
  <message><source>Their backups are still there, and Tidemark will ask again at its next start.</source><translation>Ihre Sicherungskopien sind noch da, und Tidemark fragt beim nächsten Start noch einmal.</translation></message>
  <message><source>Tidemark ended while it was rewriting files.</source><translation>Tidemark wurde beendet, während es Dateien schrieb.</translation></message>
  <message><source>These files may be written only in part:

%@
Their old content is complete in backups. Do you want to put it back? If you keep the files as they are, the backups are left for you.</source><translation>Diese Dateien wurden vielleicht nur teilweise geschrieben:

%@
Ihr alter Inhalt liegt vollständig in Sicherungskopien. Soll er wiederhergestellt werden? Wenn Sie die Dateien lassen, wie sie sind, bleiben Ihnen die Sicherungskopien erhalten.</translation></message>
  <message><source>Put Old Content Back</source><translation>Alten Inhalt wiederherstellen</translation></message>
  <message><source>Keep Files As They Are</source><translation>Dateien so lassen, wie sie sind</translation></message>
  <message><source>Decide Later</source><translation>Später entscheiden</translation></message>
  <message><source>%d of %d files were done.</source><translation>%d von %d Dateien waren fertig.</translation></message>
  <message><source>All others are as they were, and none is damaged.</source><translation>Alle anderen sind unverändert, und keine ist beschädigt.</translation></message>
  <message><source>What stands in them now is kept in new backups beside them.</source><translation>Ihr jetziger Inhalt bleibt in neuen Sicherungskopien neben ihnen erhalten.</translation></message>
  <message><source>These files may be written only in part, too, but their backups are gone or hold something else. They are left as they are:

%@</source><translation>Auch diese Dateien wurden vielleicht nur teilweise geschrieben, aber ihre Sicherungskopien fehlen oder enthalten etwas anderes. Sie bleiben, wie sie sind:

%@</translation></message>
  <message><source>These files were being written and are not where they were. Nothing is changed at these places:

%@</source><translation>Diese Dateien wurden gerade geschrieben und sind nicht mehr da, wo sie waren. An diesen Orten wird nichts geändert:

%@</translation></message>
  <message><source>The file is as it was; nothing needs to be restored.</source><translation>Die Datei ist unverändert; es muss nichts wiederhergestellt werden.</translation></message>
  <message><source>File ‘%@’ was left as it is.</source><translation>Die Datei „%@“ blieb unverändert.</translation></message>
  <message><source>Written only in part</source><translation>Nur teilweise geschrieben</translation></message>
  <message><source>Written, but the disk reported a failure</source><translation>Geschrieben, aber der Datenträger meldete einen Fehler</translation></message>
  <message><source>Written, but its backup could not be deleted</source><translation>Geschrieben, aber die Sicherungskopie konnte nicht gelöscht werden</translation></message>
  <message><source>Changed since the search</source><translation>Seit der Suche geändert</translation></message>
  <message><source>Not there any more</source><translation>Nicht mehr vorhanden</translation></message>
  <message><source>No permission</source><translation>Keine Berechtigung</translation></message>
  <message><source>No room on the disk</source><translation>Kein Platz auf dem Datenträger</translation></message>
  <message><source>The file's encoding cannot hold the new text, or not all of its bytes can be read</source><translation>Die Kodierung der Datei kann den neuen Text nicht aufnehmen, oder nicht alle ihre Bytes sind lesbar</translation></message>
  <message><source>No backup could be made</source><translation>Es konnte keine Sicherungskopie angelegt werden</translation></message>
  <message><source>The folder for notes on unfinished replacements cannot be written</source><translation>In den Ordner für Aufzeichnungen über unfertige Ersetzungen lässt sich nicht schreiben</translation></message>
  <message><source>The disk reported a failure</source><translation>Der Datenträger meldete einen Fehler</translation></message>
  <message><source>Not begun, as the disk failed or is full</source><translation>Nicht begonnen, da der Datenträger versagt hat oder voll ist</translation></message>
  <message><source>The file holds something else than what was written.</source><translation>Die Datei enthält etwas anderes, als geschrieben wurde.</translation></message>
  <message><source>Line %lu: the expression takes longer than a second there.</source><translation>Zeile %lu: Der Ausdruck braucht dort länger als eine Sekunde.</translation></message>
  <message><source>Line %lu: the expression takes too much memory there.</source><translation>Zeile %lu: Der Ausdruck braucht dort zu viel Speicher.</translation></message>
  <message><source>Line %lu: the expression caused an internal error there.</source><translation>Zeile %lu: Der Ausdruck hat dort einen internen Fehler verursacht.</translation></message>
  <message><source>So it is on %lu lines in all.</source><translation>Das gilt für insgesamt %lu Zeilen.</translation></message>
  <message><source>a dollar sign stands for itself only as $$</source><translation>ein Dollarzeichen muss als $$ geschrieben werden</translation></message>
  <message><source>a number or a name and a closing brace are missing</source><translation>es fehlen eine Nummer oder ein Name und die schließende Klammer</translation></message>
  <message><source>the find text has no such group</source><translation>diese Gruppe gibt es im Suchtext nicht</translation></message>
  <message><source>a backslash stands for itself only when it is doubled</source><translation>ein Backslash muss verdoppelt werden</translation></message>
  <message><source>unknown character behind the backslash</source><translation>unbekanntes Zeichen nach dem Backslash</translation></message>
  <message><source>this is no number of a character</source><translation>das ist keine Zeichennummer</translation></message>
  <message><source>Check to match characters of all languages and to see the whole line, also when replacing. (Cmd+U)</source><translation>Ankreuzen, damit Ausdrücke die Zeichen aller Sprachen kennen und die ganze Zeile sehen, auch beim Ersetzen. (Strg+U)</translation></message>
  <message><source>Check to find whole words only. (Cmd+D)</source><translation>Ankreuzen, um nur ganze Wörter zu finden. (Strg+D)</translation></message>
  <message><source>Some lines hold characters beyond ASCII; their matches may be shifted.</source><translation>Manche Zeilen enthalten Zeichen, die nicht zu ASCII gehören; Treffer können dort verschoben sein.</translation></message>
  <message><source>Search Again with Unicode</source><translation>Erneut suchen, mit Unicode</translation></message>
  <message><source>At character %d: %@</source><translation>Bei Zeichen %d: %@</translation></message>
  <message><source>&amp;Unicode</source><translation>Unic&amp;ode</translation></message>
  <message><source>Wh&amp;ole words</source><translation>Gan&amp;ze Wörter</translation></message>
  <message><source>&amp;Whole Words</source><translation>Gan&amp;ze Wörter</translation></message>
  <message><source>&amp;More</source><translation>&amp;Mehr</translation></message>
  <message><source>&amp;More •</source><translation>&amp;Mehr •</translation></message>
  <message><source>Lea&amp;ve out</source><translation>Auslasse&amp;n</translation></message>
  <message><source>Leave out</source><translation>Auslassen</translation></message>
  <message><source>Hidden files</source><translation>Versteckte Dateien</translation></message>
  <message><source>Obe&amp;y ignore files</source><translation>Ignore-Dateien &amp;verwenden</translation></message>
  <message><source>S&amp;kip files over</source><translation>Ma&amp;x. Größe</translation></message>
  <message><source>Largest size of a file in megabytes</source><translation>Maximale Dateigröße in Megabyte</translation></message>
  <message><source> MB</source><translation> MB</translation></message>
  <message><source>Patterns separated by commas or spaces, as in an ignore file: node_modules/ *.min.js !keep.min.js</source><translation>Muster, durch Kommas oder Leerzeichen getrennt, wie in einer Ignore-Datei: node_modules/ *.min.js !keep.min.js</translation></message>
  <message><source>Check to search files and folders whose names begin with a dot, too.</source><translation>Ankreuzen, um auch Dateien und Ordner zu durchsuchen, deren Namen mit einem Punkt beginnen.</translation></message>
  <message><source>Check to leave out what the ignore files of Git (.gitignore) and .ignore name.</source><translation>Ankreuzen, um auszulassen, was in den Ignore-Dateien von Git (.gitignore) und in .ignore steht.</translation></message>
  <message><source>Show or hide what a search leaves out.</source><translation>Ein- oder ausblenden, was bei der Suche ausgelassen wird.</translation></message>
  <message><source>“%@” matches nothing: its bracket is not closed.</source><translation>„%@“ passt auf nichts: Die eckige Klammer ist nicht geschlossen.</translation></message>
  <message><source>“%@” matches nothing: there is no such class.</source><translation>„%@“ passt auf nichts: Eine solche Klasse gibt es nicht.</translation></message>
  <message><source>“%@” matches nothing: it ends in a backslash.</source><translation>„%@“ passt auf nichts: Es endet mit einem Backslash.</translation></message>
  <message><source>“%@” matches nothing: it names no file.</source><translation>„%@“ passt auf nichts: Es nennt keine Datei.</translation></message>
  <message><source> • %@ left out</source><translation> • %@ ausgelassen</translation></message>
  <message><source>Other kinds of files: %@</source><translation>Andere Dateiarten: %@</translation></message>
  <message><source>Pattern “%@”: %@</source><translation>Muster „%@“: %@</translation></message>
  <message><source>Other patterns: %@</source><translation>Andere Muster: %@</translation></message>
  <message><source>Ignore file “%@”: %@</source><translation>Ignore-Datei „%@“: %@</translation></message>
  <message><source>Other ignore files: %@</source><translation>Andere Ignore-Dateien: %@</translation></message>
  <message><source>Hidden: %@</source><translation>Versteckt: %@</translation></message>
  <message><source>Larger than the limit: %@</source><translation>Zu groß: %@</translation></message>
  <message><source>Links: %@</source><translation>Verknüpfungen: %@</translation></message>
  <message><source>Devices, pipes and sockets: %@</source><translation>Geräte, Pipes und Sockets: %@</translation></message>
  <message><source>Backups of replaced files: %@</source><translation>Sicherungskopien: %@</translation></message>
  <message><source>Searched already by another path: %@</source><translation>Unter einem anderen Pfad bereits durchsucht: %@</translation></message>
  <message><source>Could not be read: %@</source><translation>Nicht lesbar: %@</translation></message>
  <message><source>The ignore file “%@” could not be read.</source><translation>Die Ignore-Datei „%@“ konnte nicht gelesen werden.</translation></message>
  <message><source>In the ignore file “%@” these patterns match nothing: %@</source><translation>In der Ignore-Datei „%@“ passen diese Muster auf nichts: %@</translation></message>
  <message><source>A folder that is left out counts once.</source><translation>Ein ausgelassener Ordner zählt einmal.</translation></message>
  <message><source>No matches in %@ file.</source><translation>Keine Treffer in %@ Datei.</translation></message>
  <message><source>The search was stopped before it found anything.</source><translation>Die Suche wurde angehalten, bevor sie etwas fand.</translation></message>
  <message><source>No matches in %@ files.</source><translation>Keine Treffer in %@ Dateien.</translation></message>
  <message><source>%@ file was left out…</source><translation>%@ Datei wurde ausgelassen …</translation></message>
  <message><source>%@ files were left out…</source><translation>%@ Dateien wurden ausgelassen …</translation></message>
  <message><source>Kinds of files searched in folders: %@</source><translation>In Ordnern durchsuchte Dateiarten: %@</translation></message>
  <message><source>Search Again with Everything</source><translation>Erneut suchen, ohne etwas auszulassen</translation></message>
  <message><source>Leave Out This Folder</source><translation>Diesen Ordner auslassen</translation></message>
  <message><source>Leave Out Files Like This</source><translation>Solche Dateien auslassen</translation></message>
  <message><source>%@ file read as %@</source><translation>%@ Datei gelesen als %@</translation></message>
  <message><source>%@ files read as %@</source><translation>%@ Dateien gelesen als %@</translation></message>
  <message><source>%@ file couldn't be read</source><translation>%@ Datei konnte nicht gelesen werden</translation></message>
  <message><source>%@ files couldn't be read</source><translation>%@ Dateien konnten nicht gelesen werden</translation></message>
  <message><source>byte-order mark</source><translation>Bytereihenfolge-Marke</translation></message>
  <message><source>declared</source><translation>angegeben</translation></message>
  <message><source>noted with the file</source><translation>bei der Datei vermerkt</translation></message>
  <message><source>chosen</source><translation>gewählt</translation></message>
  <message><source>default</source><translation>Standard</translation></message>
  <message><source>Encoding</source><translation>Kodierung</translation></message>
  <message><source>Encoding: %@</source><translation>Kodierung: %@</translation></message>
  <message><source>Encodings</source><translation>Kodierungen</translation></message>
  <message><source>Show Encodin&amp;gs</source><translation>Kodierun&amp;gen zeigen</translation></message>
  <message><source>Show &amp;Unreadable Files</source><translation>&amp;Unlesbare Dateien zeigen</translation></message>
  <message><source>Read As…</source><translation>Lesen als …</translation></message>
  <message><source>Read As</source><translation>Lesen als</translation></message>
  <message><source>&amp;Read</source><translation>&amp;Lesen</translation></message>
  <message><source>Preview</source><translation>Vorschau</translation></message>
  <message><source>Other encodings:</source><translation>Andere Kodierungen:</translation></message>
  <message><source>“%@” was read in %@. Which encoding is it in?</source><translation>„%@“ wurde in %@ gelesen. In welcher Kodierung ist die Datei?</translation></message>
  <message><source>“%@” isn't text in %@. Which encoding is it in?</source><translation>„%@“ ist kein Text in %@. In welcher Kodierung ist die Datei?</translation></message>
  <message><source>The same for %@ &amp;other file that couldn't be read in %@</source><translation>Ebenso für %@ &amp;andere Datei, die in %@ nicht gelesen werden konnte</translation></message>
  <message><source>The same for %@ &amp;other files that couldn't be read in %@</source><translation>Ebenso für %@ &amp;andere Dateien, die in %@ nicht gelesen werden konnten</translation></message>
  <message><source>Line %lu in this encoding:</source><translation>Zeile %lu in dieser Kodierung:</translation></message>
  <message><source>Select an encoding to see what becomes of the file.</source><translation>Wählen Sie eine Kodierung, um zu sehen, was aus der Datei wird.</translation></message>
</context>
</TS>
