#pragma once

#include <QByteArray>
#include <QByteArrayView>

namespace tidemark {

/// The name of a backup is its file's name, this mark and unique letters.
inline constexpr QByteArrayView BACKUP_NAME_MARK = ".TDMBackup.";
/// How many unique letters a backup beside its file has.
inline constexpr int LETTERS_OF_LASTING_BACKUP = 3;
/// How many one in the temporary folder has.
inline constexpr int LETTERS_OF_TRANSIENT_BACKUP = 6;

/// Whether the last component of a path is the name of such a backup.
bool isBackupName(QByteArrayView name);

/// The name of a file's backup, ending in as many Xs as it has unique letters. At most `longest` bytes: the
/// end of a longer file name is cut off, never within a UTF-8 character.
QByteArray backupNameTemplate(const QByteArray &fileName, int letters, qsizetype longest);

} // namespace tidemark
