#pragma once

#include "search/IgnorePattern.h"

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace tidemark {

/// A list of patterns, of which the last that matches decides. Most are found by a look-up, however many
/// there are.
class IgnorePatterns
{
public:
    /// As many as a field holds, apart by commas or blanks that no backslash stands before.
    static IgnorePatterns ofField(const QString &text, CaseRule caseRule);
    /// Those of an ignore file: one a line, without empty lines, remarks and blanks at the end.
    static IgnorePatterns ofFile(QByteArrayView content, CaseRule caseRule);

    bool isEmpty() const { return _patterns.empty(); }
    const std::vector<IgnorePattern> &all() const { return _patterns; }
    /// Whether lastMatch() needs paths.
    bool haveOnesForPaths() const { return _haveOnesForPaths; }
    /// The index of the last pattern that matches the entry, or -1. Its path, relative to where the patterns
    /// hold, ends in its name.
    int lastMatch(QByteArrayView name, QByteArrayView path, EntryKind kind) const;

private:
    /// Lets a table be asked without making a text.
    struct TextHash
    {
        using is_transparent = void;
        size_t operator()(std::string_view text) const { return std::hash<std::string_view>()(text); }
    };
    /// Indices in their order.
    using Indices = std::vector<int>;
    using Table = std::unordered_map<std::string, Indices, TextHash, std::equal_to<>>;

    explicit IgnorePatterns(CaseRule caseRule) : _caseRule(caseRule) {}
    void _add(QByteArrayView text);
    int _lastFitting(const Indices &indices, EntryKind kind) const;
    int _lastInTables(QByteArrayView name, EntryKind kind) const;

    CaseRule _caseRule;
    std::vector<IgnorePattern> _patterns;
    Table _names;    ///< patterns that are names, by them
    Table _suffixes; ///< patterns such as "*.txt", by what is behind the star
    Indices _others;
    bool _haveOnesForPaths = false;
};

} // namespace tidemark
