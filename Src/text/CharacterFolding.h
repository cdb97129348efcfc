#pragma once

#include <QStringView>

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

namespace tidemark {

enum class CaseRule { Exact, Ignore };

/// One character of a comparison key. The combining class is the one it had before case folding: it decides
/// where the character may be moved to, and U+0345 keeps being a mark there although it folds to a letter.
struct KeyCharacter
{
    std::uint32_t value : 21;
    std::uint32_t combiningClass : 8;
    /// Inside the tables only: 0, or the length of a sequence that begins at index `value`.
    std::uint32_t sequenceLength : 3;
};

using ComparisonKey = std::vector<KeyCharacter>;

/// What one character becomes in a key: one to seven key characters. Refers to the tables, which live as
/// long as the program.
class CharacterKey
{
public:
    explicit CharacterKey(KeyCharacter own) : _own(own) {}
    CharacterKey(const KeyCharacter *sequence, int length) : _own(), _sequence(sequence), _length(length) {}

    const KeyCharacter *begin() const { return _sequence ? _sequence : &_own; }
    const KeyCharacter *end() const { return begin() + _length; }
    int size() const { return _length; }

private:
    KeyCharacter _own;
    const KeyCharacter *_sequence = nullptr;
    int _length = 1;
};

/// The tables of canonical decomposition, with CaseRule::Ignore followed by full case folding without the
/// Turkic rules. Two texts are equal under the rule exactly when their keys are. Immutable.
class CharacterFolding
{
public:
    /// Built on first use, which takes about a millisecond; any thread may be the first.
    static const CharacterFolding &forRule(CaseRule caseRule);

    CharacterKey keyOf(char32_t character) const
    {
        const Page *page = _pages[character / PAGE_SIZE].get();
        if (!page)
            return CharacterKey(KeyCharacter{character, 0, 0});
        const KeyCharacter entry = page->entries[character % PAGE_SIZE];
        return entry.sequenceLength == 0 ? CharacterKey(entry)
                                         : CharacterKey(&_sequences[entry.value], int(entry.sequenceLength));
    }

    /// The key of a whole text, its marks in canonical order. A lone surrogate stands for itself.
    ComparisonKey keyOf(QStringView text) const;

    /// Every character whose key begins with `value`; the value itself comes first when it is one of them.
    std::vector<char32_t> charactersStartingWith(char32_t value) const;

private:
    static constexpr char32_t PAGE_SIZE = 256;
    static constexpr char32_t PAGE_COUNT = 0x110000 / PAGE_SIZE;
    struct Page
    {
        std::array<KeyCharacter, PAGE_SIZE> entries;
    };
    struct Origin
    {
        char32_t value;
        char32_t character;
        friend auto operator<=>(const Origin &, const Origin &) = default;
    };

    explicit CharacterFolding(CaseRule caseRule);
    void _add(char32_t character, const KeyCharacter *key, size_t length);
    void _addSyllables();
    Page &_pageOf(char32_t character);

    std::array<std::unique_ptr<Page>, PAGE_COUNT> _pages;
    ComparisonKey _sequences;
    /// Without those of the Hangul syllables, which can be worked out.
    std::vector<Origin> _origins;
};

/// Puts each run of marks into canonical order.
void sortMarks(KeyCharacter *begin, KeyCharacter *end);

/// The code point at `index` of a text of `length` units; a surrogate without its other half stands for
/// itself.
inline char32_t characterAt(const char16_t *text, qsizetype index, qsizetype length)
{
    const char16_t unit = text[index];
    if (!QChar::isHighSurrogate(unit) || index + 1 >= length || !QChar::isLowSurrogate(text[index + 1]))
        return unit;
    return QChar::surrogateToUcs4(unit, text[index + 1]);
}

inline int unitCount(char32_t character)
{
    return character > 0xFFFF ? 2 : 1;
}

} // namespace tidemark
