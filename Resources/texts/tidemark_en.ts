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
</context>
</TS>
