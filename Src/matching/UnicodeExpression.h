#pragma once

#include "matching/SearchedLine.h"
#include "matching/TextFault.h"
#include "text/PlainTextPattern.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QList>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>

namespace tidemark {

/// A Perl expression over characters, compiled once and shared by any number of threads. The text that it is
/// applied to must be valid UTF-8 and is seen as a whole: anchors and look-around know what surrounds a
/// match.
class UnicodeExpression
{
public:
    /// Null with the fault when the expression is malformed.
    static std::shared_ptr<const UnicodeExpression> compiled(const QString &expression, CaseRule caseRule,
                                                             TextFault &fault);
    ~UnicodeExpression();
    UnicodeExpression(const UnicodeExpression &) = delete;
    UnicodeExpression &operator=(const UnicodeExpression &) = delete;

    /// How empty matches where the search starts are taken.
    enum class EmptyAtStart { Allowed, NotAllowed };
    /// The first match from the position on. Its groups are this thread's until its next search:
    /// groupRange(). Throws WorkStopped on a stop.
    LineSearch search(QByteArrayView text, qsizetype from, EmptyAtStart emptyAtStart,
                      SearchEffort &effort) const;

    /// Of the last match found on this thread, in bytes; 0 is the whole match. Not found for a group that
    /// took no part in it.
    static TextRange groupRange(int group);

    int groupCount() const { return _groupCount; }
    /// The groups of this name, ascending; several where names may be used twice.
    QList<int> groupsNamed(const QString &name) const;

private:
    struct Code;
    explicit UnicodeExpression(std::unique_ptr<Code> code);
    LineSearch _searchWatched(QByteArrayView text, qsizetype from, unsigned options,
                              SearchEffort &effort) const;

    std::unique_ptr<Code> _code;
    int _groupCount = 0;
};

} // namespace tidemark
