#pragma once

#include "matching/TDFindResultItem.h"
#include "reading/FileLines.h"

#include <atomic>
#include <memory>
#include <optional>

namespace tidemark {

/// What is listed of a file, held against the content that the file has now. One thread.
class StandingLines
{
public:
    /// The encoding as for the line reader. Once it is to stop, nothing stands any more.
    StandingLines(const FilePath &path, StringEncoding encoding, const std::atomic<bool> &shouldStop);

    /// Of the content; nothing where it can't be read.
    std::optional<FileDate> date() const;

    /// Whether all that is listed stands there, by these numbers of the file's nodes, and the lines that were
    /// found in it now are among that. Null: nothing was found.
    bool hold(const TDFindResultItem &file, const QList<qint64> &lineNumbers, const TDFindResultItem *found);

    /// A listed line, and its number now.
    struct Numbered
    {
        std::shared_ptr<TDMatchLine> line;
        qint64 number = 0;
    };
    /// The listed lines in which something was replaced and that still read so.
    QList<Numbered> replacedLines(const TDFindResultItem &file);

private:
    bool _stands(const QString &text, qint64 number);

    const std::atomic<bool> &_shouldStop;
    std::unique_ptr<FileLines> _lines;
};

} // namespace tidemark
