#pragma once

#include "text/PlainTextPattern.h"

#include <QByteArrayView>

#include <memory>
#include <vector>

namespace tidemark {

/// A line of a block, as byte offsets into it; `end` is open and lies behind the line end.
struct LineSpan
{
    qsizetype start = 0;
    qsizetype end = 0;
    friend bool operator==(const LineSpan &, const LineSpan &) = default;
};

/// Chooses, in whole blocks of UTF-8 text, the lines in which a pattern may match. It never passes over a
/// line with a match; it may choose lines without one. Immutable: any number of threads may scan with one
/// object, each with a Scanner of its own.
class LinePrefilter
{
public:
    /// Null when nothing can be said about the pattern, so that every line has to be searched.
    static std::unique_ptr<const LinePrefilter> forPlainText(const PlainTextPattern &pattern);
    /// The same for an expression, given as its UTF-8 bytes.
    static std::unique_ptr<const LinePrefilter> forExpression(QByteArrayView expression, CaseRule caseRule);

    /// The same for an expression over characters.
    static std::unique_ptr<const LinePrefilter> forUnicodeExpression(QByteArrayView expression,
                                                                     CaseRule caseRule);

    ~LinePrefilter();

    /// What one thread needs to scan. The prefilter must outlive it.
    class Scanner
    {
    public:
        explicit Scanner(const LinePrefilter &prefilter);
        ~Scanner();
        Scanner(const Scanner &) = delete;
        Scanner &operator=(const Scanner &) = delete;

        /// Appends the candidate lines of the block, ascending and each once. The block begins at the start
        /// of a line; lines end at LF, CR LF or CR. False when there are so many that choosing costs more
        /// than searching every line; what was appended then means nothing.
        bool candidateLines(QByteArrayView block, std::vector<LineSpan> &lines);

    private:
        struct Implementation;
        std::unique_ptr<Implementation> _implementation;
    };

private:
    struct Database;
    explicit LinePrefilter(std::unique_ptr<const Database> database);
    template <typename Compile>
    static std::unique_ptr<const LinePrefilter> _withDatabase(Compile compile, qsizetype bytesPerMatch);

    std::unique_ptr<const Database> _database;
};

} // namespace tidemark
