#pragma once

#include "foundation/TDError.h"
#include "matching/FindOptions.h"
#include "matching/LinePrefilter.h"
#include "matching/SearchedLine.h"
#include "matching/TextFault.h"
#include "text/TextRange.h"

#include <QString>

#include <memory>
#include <mutex>
#include <optional>

namespace tidemark {

class UnicodeExpression;

/// One way to read a find text, which it holds, prepared for searching. Immutable to its users: any number of
/// threads may search with one object. What takes long to prepare is made when it is first needed; a stop
/// breaks that off.
class FindKind
{
public:
    static std::shared_ptr<const FindKind> make(const QString &findText, const FindOptions &options);
    virtual ~FindKind() = default;

    /// Chooses lines in which there may be a match; null when every line has to be searched.
    const LinePrefilter *prefilter() const;

    /// The first match within the range of the line, or not found. An empty match at the very start of the
    /// line counts as not found. A faulty expression, or one that fails while searching or takes too long,
    /// sets error code 36.
    virtual TextRange firstRange(SearchedLine &line, TextRange searchRange, TDError &error) const = 0;

    /// The match that follows those found before, or not found when there is none. Where only whole words
    /// count, others are passed over. A limit of the line says that it wasn't searched to its end.
    virtual TextRange nextMatch(SearchedLine &line, TDError &error) const;

    /// What a line of this length may take.
    virtual SearchEffort effortFor(qsizetype lineSize) const { return SearchEffort(lineSize); }

    /// What is wrong with the find text; nothing when it can be searched for.
    virtual std::optional<TextFault> fault() const { return {}; }

    /// The expression whose groups tell how a match is replaced; null for kinds that replace without, and for
    /// a faulty one.
    virtual const UnicodeExpression *expression() const { return nullptr; }

protected:
    explicit FindKind(const FindOptions &options) : _options(options) {}
    const FindOptions &options() const { return _options; }
    /// Whether a range that firstRange() found is a whole word, in the text in which its positions count.
    virtual bool isWholeWord(SearchedLine &line, TextRange range) const = 0;
    virtual qint64 positionBehindFailedWord(SearchedLine &line, TextRange range) const = 0;
    virtual std::unique_ptr<const LinePrefilter> makePrefilter() const = 0;

private:
    FindOptions _options;
    mutable std::once_flag _prefilterOnce;
    mutable std::unique_ptr<const LinePrefilter> _prefilter;
};

std::shared_ptr<const FindKind> makePlainTextKind(const QString &findText, const FindOptions &options);
/// Searches bytes: positions in the line's UTF-8 are used as positions in the line as they stand, and so is
/// the range that is searched. Nothing before the range is visible.
std::shared_ptr<const FindKind> makeByteExpressionKind(const QString &findText, const FindOptions &options);
/// Searches the line's characters, and sees all of the line whatever was found before; finds empty matches as
/// well, each once. Positions are exact.
std::shared_ptr<const FindKind> makeUnicodeExpressionKind(const QString &findText,
                                                          const FindOptions &options);

} // namespace tidemark
