#pragma once

#include "text/CandidateScan.h"
#include "text/CharacterFolding.h"
#include "text/TextRange.h"

#include <QString>

#include <optional>

namespace tidemark {

/// A find text prepared once for the platform's string search: canonically equivalent sequences match each
/// other, with CaseRule::Ignore letters match by full case folding, and a match never ends within a
/// combining sequence. Immutable, so one object serves any number of threads.
class PlainTextPattern
{
public:
    PlainTextPattern(const QString &findText, CaseRule caseRule);

    /// The lowest match that lies within `searchRange` of `text` (UTF-16 units, counted from the start of
    /// `text`), its length being that of the matched stretch of `text`; TextRange::notFound() when there is
    /// none, or when the find text or the range is empty. Nothing outside the range is looked at.
    /// `searchRange` must lie within `text`.
    TextRange firstRange(QStringView text, TextRange searchRange) const;

    const QString &findText() const { return _findText; }
    CaseRule caseRule() const { return _caseRule; }

private:
    void _prepareScan();
    qsizetype _nextCandidate(QStringView stretch, qsizetype from, qsizetype last) const;
    qsizetype _matchEnd(QStringView stretch, qsizetype start) const;

    QString _findText;
    CaseRule _caseRule;
    const CharacterFolding *_folding;
    ComparisonKey _key;
    qsizetype _shortestMatch = 0;
    /// Nothing when the find text is empty.
    std::optional<CandidateScan> _scan;
};

} // namespace tidemark
