#pragma once

#include "foundation/FilePath.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

namespace tidemark {

/// What happens to a few text files between two moments.
class FileDifference
{
public:
    /// Keeps the files' present content.
    explicit FileDifference(const QList<FilePath> &files);

    /// The lines that aren't the same any more, before and after, at most so many for each file; empty for
    /// unchanged files.
    QStringList changedLines(int mostLines) const;

private:
    struct File
    {
        FilePath path;
        QByteArray content;
    };
    static QByteArray _contentOf(const FilePath &path);

    QList<File> _files;
};

} // namespace tidemark
