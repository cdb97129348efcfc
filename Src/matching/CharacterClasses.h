#pragma once

#include "text/PlainTextPattern.h"

#include <QByteArray>

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace tidemark {

/// Spells out which characters a set, a property or another piece of an expression over characters stands
/// for, for a matcher that knows another version of Unicode.
class CharacterClasses
{
public:
    explicit CharacterClasses(CaseRule caseRule) : _caseRule(caseRule) {}

    /// A set that names the same characters by their numbers, without line ends. Beyond ASCII it may hold
    /// more, and it holds all of them where there are too many to name. Nothing for a faulty piece, for one
    /// that matches nothing, and after many calls, since each takes milliseconds.
    std::optional<QByteArray> explicitSet(std::string_view piece);

private:
    std::optional<QByteArray> _made(std::string_view piece);

    CaseRule _caseRule;
    QByteArray _characters; ///< those looked at, as UTF-8; made when first needed
    std::map<std::string, std::optional<QByteArray>, std::less<>> _known;
};

} // namespace tidemark
