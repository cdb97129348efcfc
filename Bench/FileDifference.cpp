#include "FileDifference.h"

#include <QFile>

namespace tidemark {

using namespace Qt::Literals::StringLiterals;

FileDifference::FileDifference(const QList<FilePath> &files)
{
    for (const FilePath &path : files)
        _files.append({path, _contentOf(path)});
}

QByteArray FileDifference::_contentOf(const FilePath &path)
{
    QFile file(QFile::decodeName(path.bytes()));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QStringList FileDifference::changedLines(int mostLines) const
{
    QStringList shown;
    for (const File &file : _files) {
        const QByteArray now = _contentOf(file.path);
        if (now == file.content)
            continue;
        shown << u"--- "_s + file.path.displayText();
        const QList<QByteArray> before = file.content.split('\n');
        const QList<QByteArray> after = now.split('\n');
        int lines = 0;
        for (qsizetype line = 0; line < qMin(before.size(), after.size()) && lines < mostLines; ++line) {
            if (before[line] == after[line])
                continue;
            shown << u"%1 - %2"_s.arg(line + 1).arg(QString::fromUtf8(before[line]).trimmed())
                  << u"%1 + %2"_s.arg(line + 1).arg(QString::fromUtf8(after[line]).trimmed());
            ++lines;
        }
    }
    return shown;
}

} // namespace tidemark
