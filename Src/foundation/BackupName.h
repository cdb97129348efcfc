#pragma once

#include <QByteArray>
#include <QByteArrayView>

namespace tidemark {

/// Of a file's backup: its own name, ".TDMBackup." and unique letters.
inline constexpr QByteArrayView BACKUP_NAME_MARK = ".TDMBackup.";
/// How many unique letters a backup beside its file has.
inline constexpr int LETTERS_OF_LASTING_BACKUP = 3;
/// How many one in the temporary folder has.
inline constexpr int LETTERS_OF_TRANSIENT_BACKUP = 6;

/// Whether the last component of a path is the name of such a backup.
bool isBackupName(QByteArrayView name);

/// The name of a file's backup, ending in as many Xs as it has unique letters. At most `longest` bytes: of a
/// name that is too long the end is left out, never a part of a UTF-8 character.
QByteArray backupNameTemplate(const QByteArray &fileName, int letters, qsizetype longest);

} // namespace tidemark
