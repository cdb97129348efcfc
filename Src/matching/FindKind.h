#pragma once

#include "foundation/TDError.h"
#include "foundation/TextRange.h"
#include "matching/FindOptions.h"
#include "matching/LinePrefilter.h"
#include "matching/SearchedLine.h"

#include <QString>

#include <memory>
#include <mutex>

namespace tidemark {

/// One way to read a find text, which it holds, prepared for searching. Immutable to its users: any number of
/// threads may search with one object. What takes long is made when it is first needed, where a stop breaks
/// it off.
class FindKind
{
public:
    static std::shared_ptr<const FindKind> make(const QString &findText, const FindOptions &options);
    virtual ~FindKind() = default;

    /// What chooses lines in which there may be a match; null when every line has to be searched.
    const LinePrefilter *prefilter() const;

    /// The first match within the range of the line, or not found. An empty match at the very start of the
    /// line counts as not found. A faulty expression, or one that fails while searching or takes too long,
    /// sets error code 36.
    virtual TextRange firstRange(SearchedLine &line, TextRange searchRange, TDError &error) const = 0;

    /// The match that follows those found before, or not found when there is none.
    virtual TextRange nextMatch(SearchedLine &line, TDError &error) const;

protected:
    virtual std::unique_ptr<const LinePrefilter> makePrefilter() const = 0;

private:
    mutable std::once_flag _prefilterOnce;
    mutable std::unique_ptr<const LinePrefilter> _prefilter;
};

std::shared_ptr<const FindKind> makePlainTextKind(const QString &findText, const FindOptions &options);
/// Searches bytes: positions in the line's UTF-8 are used as positions in the line as they stand, and so is
/// the range that is searched. Nothing before the range is visible.
std::shared_ptr<const FindKind> makeByteExpressionKind(const QString &findText, const FindOptions &options);

} // namespace tidemark
