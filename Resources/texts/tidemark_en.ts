<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="en">
<context>
  <name>Localizable</name>
  <message><source>IDS_Any</source><translation>Any file</translation></message>
  <message><source>IDS_Text</source><translation>Text</translation></message>
  <message><source>IDS_Documents</source><translation>Documents</translation></message>
  <message><source>IDS_SourceCode</source><translation>Source code</translation></message>
  <message><source>IDS_WildcardSample1</source><translation>Plain text files (sample)</translation></message>
  <message><source>IDS_WildcardSample2</source><translation>C sources and headers (sample)</translation></message>
  <message><source>IDS_WildcardSample1Uti</source><translation>*.txt</translation></message>
  <message><source>IDS_WildcardSample2Uti</source><translation>*.[ch]</translation></message>
  <message><source>To restore the file use Finder to copy file ‘%@’ to file ‘%@’. Afterwards delete the backup file.</source><translation>To restore the file use the file manager to copy file ‘%@’ to file ‘%@’. Afterwards delete the backup file.</translation></message>
  <message><source>Locate a file or folder to search. (Cmd+O)</source><translation>Locate a file or folder to search. (Ctrl+O)</translation></message>
  <message><source>Remove the selected file or folder from the search. (Cmd+P)</source><translation>Remove the selected file or folder from the search. (Ctrl+P)</translation></message>
  <message><source>Select kinds of files to include in search. (Cmd+F)</source><translation>Select kinds of files to include in search. (Ctrl+F)</translation></message>
  <message><source>Start or stop the search. (Cmd+Enter)</source><translation>Start or stop the search. (Ctrl+Enter)</translation></message>
  <message><source>Check to see what each match would become in the search results. (Cmd+Shift+R)</source><translation>Check to see what each match would become in the search results. (Ctrl+Shift+R)</translation></message>
  <message><source>Check to perform case sensitive searching. (Cmd+C)</source><translation>Check to perform case sensitive searching. (Ctrl+C)</translation></message>
  <message><source>Check to use regular expressions in find text. (Cmd+G)</source><translation>Check to use regular expressions in find text. (Ctrl+G)</translation></message>
  <message><source>Replace the currently highlighed match in the search results with the replace text. (Cmd+R)</source><translation>Replace the currently highlighed match in the search results with the replace text. (Ctrl+R)</translation></message>
  <message><source>Replace the currently highlighed match in the search results with the replace text and move to the next match. (Cmd+X)</source><translation>Replace the currently highlighed match in the search results with the replace text and move to the next match. (Ctrl+X)</translation></message>
  <message><source>Replace the currently selected matches in the search results with the replace text. (Cmd+S)</source><translation>Replace the currently selected matches in the search results with the replace text. (Ctrl+S)</translation></message>
  <message><source>Replace all the matches in the search results with the replace text. (Cmd+L)</source><translation>Replace all the matches in the search results with the replace text. (Ctrl+L)</translation></message>
  <message><source>Highlight the previous match in the search results. (Up; Cmd+Up to move to the first match in previous file)</source><translation>Highlight the previous match in the search results. (Up; Ctrl+Up to move to the first match in previous file)</translation></message>
  <message><source>Highlight the next match in the search results. (Down; Cmd+Down to move to the first match in next file)</source><translation>Highlight the next match in the search results. (Down; Ctrl+Down to move to the first match in next file)</translation></message>
  <message><source>Expand or collapse all matches to either show or hide all matches. (Cmd+E)</source><translation>Expand or collapse all matches to either show or hide all matches. (Ctrl+E)</translation></message>
  <message><source>IDS_ProductVersion</source><translation>Version %@</translation></message>
  <message><source>IDS_ProductNameAndVersion</source><translation>Velkor Tidemark %@</translation></message>
  <message><source>Reveal in Finder</source><translation>Show in File Manager</translation></message>
  <message><source>IDS_HelpFolder</source><translation>en</translation></message>
  <message><source>Check to match characters of all languages and to see the whole line, also when replacing. (Cmd+U)</source><translation>Check to match characters of all languages and to see the whole line, also when replacing. (Ctrl+U)</translation></message>
  <message><source>Check to find whole words only. (Cmd+D)</source><translation>Check to find whole words only. (Ctrl+D)</translation></message>
</context>
</TS>
