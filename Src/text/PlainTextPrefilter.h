#pragma once

#include <QString>

#include <vector>

namespace tidemark {

class MatchLattice;
class PlainTextPattern;

/// What every match of a pattern contains, spelled out, so that a byte-level matcher can pass over texts
/// without one. It never excludes a text that has a match; it may let others through.
///
/// The texts given are compared with the searched text unit by unit: there is no equivalence and no case left
/// in them. They can be looked for in undecoded bytes when each character of the encoding has just one
/// sequence of bytes (UTF-8, every single-byte encoding); a text that the encoding can't hold does not occur
/// there. It does not work for encodings with shift states.
class PlainTextPrefilter
{
public:
    /// The spellings of one part of the find text, each of one or more characters; without duplicates.
    using Spellings = std::vector<QString>;

    explicit PlainTextPrefilter(const PlainTextPattern &pattern);

    /// Every match contains, side by side, one spelling of each part, in the order of the parts. These are
    /// the longest stretch of the find text that can be spelled out; empty when nothing can be said.
    const std::vector<Spellings> &parts() const { return _parts; }

    /// The same as whole texts, for a matcher that takes a set of literals: every match contains at least one
    /// of them. At most `mostTexts`, as long as this allows; empty when nothing can be said.
    std::vector<QString> requiredTexts(size_t mostTexts) const;

private:
    std::vector<Spellings> _parts;
};

} // namespace tidemark
