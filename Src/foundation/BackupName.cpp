#include "foundation/BackupName.h"

#include <algorithm>

namespace tidemark {

namespace {

bool isUniqueLetter(char letter)
{
    return (letter >= 'A' && letter <= 'Z') || (letter >= 'a' && letter <= 'z') ||
           (letter >= '0' && letter <= '9');
}

bool isContinuationByte(char byte)
{
    return (uchar(byte) & 0xC0) == 0x80;
}

} // namespace

bool isBackupName(QByteArrayView name)
{
    const auto endsWithLetters = [name](int letters) {
        return name.chopped(qMin<qsizetype>(letters, name.size())).endsWith(BACKUP_NAME_MARK) &&
               std::all_of(name.end() - letters, name.end(), isUniqueLetter);
    };
    return endsWithLetters(LETTERS_OF_LASTING_BACKUP) || endsWithLetters(LETTERS_OF_TRANSIENT_BACKUP);
}

QByteArray backupNameTemplate(const QByteArray &fileName, int letters, qsizetype longest)
{
    const QByteArray end = BACKUP_NAME_MARK.toByteArray() + QByteArray(letters, 'X');
    qsizetype length = qMin(fileName.size(), qMax<qsizetype>(0, longest - end.size()));
    if (length < fileName.size()) {
        while (length > 0 && isContinuationByte(fileName[length]))
            --length;
    }
    return fileName.first(length) + end;
}

} // namespace tidemark
