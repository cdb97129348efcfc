#pragma once

#include "text/PlainTextPattern.h"

#include <QByteArray>

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace tidemark {

/// Which characters are meant by a set, a property or another piece of an expression over characters that
/// stands for one of them, for somebody who knows another version of Unicode.
class CharacterClasses
{
public:
    explicit CharacterClasses(CaseRule caseRule) : _caseRule(caseRule) {}

    /// A set of the same characters by their numbers, without line ends. It may hold more beyond ASCII, and
    /// holds all of these where they are too many to name. Nothing for a faulty piece, one that matches
    /// nothing, and where there have been many already: each takes milliseconds.
    std::optional<QByteArray> explicitSet(std::string_view piece);

private:
    std::optional<QByteArray> _made(std::string_view piece);

    CaseRule _caseRule;
    QByteArray _characters; ///< those looked at, as UTF-8; made when first needed
    std::map<std::string, std::optional<QByteArray>, std::less<>> _known;
};

} // namespace tidemark
