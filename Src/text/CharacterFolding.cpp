#include "text/CharacterFolding.h"

#include <unicode/uchar.h>
#include <unicode/unorm2.h>
#include <unicode/uset.h>
#include <unicode/ustring.h>

#include <algorithm>
#include <stdexcept>

namespace tidemark {

namespace {

// The longest canonical decomposition has four characters, and each folds to three at most.
constexpr int SHORT_TEXT = 32;

// Hangul syllables are most of the characters that have keys, and these follow from their numbers.
constexpr char32_t FIRST_SYLLABLE = 0xAC00;
constexpr char32_t LAST_SYLLABLE = 0xD7A3;
constexpr char32_t FIRST_LEADING = 0x1100;
constexpr char32_t FIRST_VOWEL = 0x1161;
constexpr char32_t BEFORE_FIRST_TRAILING = 0x11A7;
constexpr char32_t LEADING_COUNT = 19;
constexpr char32_t VOWEL_COUNT = 21;
constexpr char32_t TRAILING_COUNT = 28; ///< none at all included

void require(UErrorCode status)
{
    if (U_FAILURE(status))
        throw std::runtime_error(u_errorName(status));
}

const UNormalizer2 *decomposer()
{
    UErrorCode status = U_ZERO_ERROR;
    const UNormalizer2 *normalizer = unorm2_getNFDInstance(&status);
    require(status);
    return normalizer;
}

struct SetCloser
{
    void operator()(USet *set) const { uset_close(set); }
};
using OwnedSet = std::unique_ptr<USet, SetCloser>;

OwnedSet charactersWith(UProperty property, int value)
{
    OwnedSet set(uset_openEmpty());
    UErrorCode status = U_ZERO_ERROR;
    uset_applyIntPropertyValue(set.get(), property, value, &status);
    require(status);
    return set;
}

/// Every character whose key is anything but the character itself without a combining class,
/// but for the Hangul syllables.
OwnedSet charactersWithKeys(CaseRule caseRule)
{
    OwnedSet set = charactersWith(UCHAR_CANONICAL_COMBINING_CLASS, 0);
    uset_complement(set.get());
    uset_addAll(set.get(), charactersWith(UCHAR_NFD_QUICK_CHECK, UNORM_NO).get());
    if (caseRule == CaseRule::Ignore)
        uset_addAll(set.get(), charactersWith(UCHAR_CHANGES_WHEN_CASEFOLDED, 1).get());
    uset_removeRange(set.get(), FIRST_SYLLABLE, LAST_SYLLABLE);
    return set;
}

int decompose(char32_t character, char16_t *target)
{
    UErrorCode status = U_ZERO_ERROR;
    int length = unorm2_getDecomposition(decomposer(), UChar32(character), target, SHORT_TEXT, &status);
    require(status);
    if (length < 0) {
        length = 0;
        U16_APPEND_UNSAFE(target, length, character);
    }
    return length;
}

void appendFolded(ComparisonKey &key, char32_t character, CaseRule caseRule)
{
    const std::uint32_t combiningClass = u_getCombiningClass(UChar32(character));
    char16_t folded[SHORT_TEXT];
    int length = 0;
    U16_APPEND_UNSAFE(folded, length, character);
    if (caseRule == CaseRule::Ignore) {
        const int sourceLength = length;
        const std::array<char16_t, 2> source = {folded[0], folded[1]};
        UErrorCode status = U_ZERO_ERROR;
        length = u_strFoldCase(folded, SHORT_TEXT, source.data(), sourceLength, U_FOLD_CASE_DEFAULT, &status);
        require(status);
    }
    for (int i = 0; i < length;) {
        const char32_t value = characterAt(folded, i, length);
        key.push_back({value, combiningClass, 0});
        i += unitCount(value);
    }
}

ComparisonKey computedKey(char32_t character, CaseRule caseRule)
{
    char16_t decomposed[SHORT_TEXT];
    const int length = decompose(character, decomposed);
    ComparisonKey key;
    for (int i = 0; i < length;) {
        const char32_t part = characterAt(decomposed, i, length);
        appendFolded(key, part, caseRule);
        i += unitCount(part);
    }
    return key;
}

} // namespace

const CharacterFolding &CharacterFolding::forRule(CaseRule caseRule)
{
    if (caseRule == CaseRule::Exact) {
        static const CharacterFolding exact(CaseRule::Exact);
        return exact;
    }
    static const CharacterFolding ignoring(CaseRule::Ignore);
    return ignoring;
}

CharacterFolding::CharacterFolding(CaseRule caseRule)
{
    const OwnedSet set = charactersWithKeys(caseRule);
    const int rangeCount = uset_getItemCount(set.get());
    for (int i = 0; i < rangeCount; ++i) {
        UChar32 first = 0;
        UChar32 last = 0;
        UErrorCode status = U_ZERO_ERROR;
        // Only ranges are asked for: the set holds no strings.
        uset_getItem(set.get(), i, &first, &last, nullptr, 0, &status);
        require(status);
        for (auto character = char32_t(first); character <= char32_t(last); ++character) {
            const ComparisonKey key = computedKey(character, caseRule);
            _add(character, key.data(), key.size());
            if (key.front().value != character)
                _origins.push_back({key.front().value, character});
        }
    }
    std::sort(_origins.begin(), _origins.end());
    _addSyllables();
}

void CharacterFolding::_add(char32_t character, const KeyCharacter *key, size_t length)
{
    KeyCharacter &entry = _pageOf(character).entries[character % PAGE_SIZE];
    if (length == 1) {
        entry = *key;
    } else {
        entry = {std::uint32_t(_sequences.size()), 0, std::uint32_t(length) & 7};
        _sequences.insert(_sequences.end(), key, key + length);
    }
}

void CharacterFolding::_addSyllables()
{
    for (char32_t syllable = FIRST_SYLLABLE; syllable <= LAST_SYLLABLE; ++syllable) {
        const char32_t index = syllable - FIRST_SYLLABLE;
        const char32_t trailing = index % TRAILING_COUNT;
        const std::array<KeyCharacter, 3> key = {
            {{FIRST_LEADING + index / (VOWEL_COUNT * TRAILING_COUNT), 0, 0},
             {FIRST_VOWEL + index / TRAILING_COUNT % VOWEL_COUNT, 0, 0},
             {BEFORE_FIRST_TRAILING + trailing, 0, 0}}};
        _add(syllable, key.data(), trailing == 0 ? 2 : 3);
    }
}

CharacterFolding::Page &CharacterFolding::_pageOf(char32_t character)
{
    std::unique_ptr<Page> &page = _pages[character / PAGE_SIZE];
    if (!page) {
        page = std::make_unique<Page>();
        for (char32_t i = 0; i < PAGE_SIZE; ++i)
            page->entries[i] = {character / PAGE_SIZE * PAGE_SIZE + i, 0, 0};
    }
    return *page;
}

ComparisonKey CharacterFolding::keyOf(QStringView text) const
{
    ComparisonKey key;
    key.reserve(size_t(text.size()));
    for (qsizetype i = 0; i < text.size();) {
        const char32_t character = characterAt(text.utf16(), i, text.size());
        const CharacterKey parts = keyOf(character);
        key.insert(key.end(), parts.begin(), parts.end());
        i += unitCount(character);
    }
    sortMarks(key.data(), key.data() + key.size());
    return key;
}

std::vector<char32_t> CharacterFolding::charactersStartingWith(char32_t value) const
{
    std::vector<char32_t> characters;
    if (keyOf(value).begin()->value == value)
        characters.push_back(value);
    auto origin = std::lower_bound(_origins.begin(), _origins.end(), Origin{value, 0});
    for (; origin != _origins.end() && origin->value == value; ++origin)
        characters.push_back(origin->character);
    const char32_t leading = value - FIRST_LEADING;
    for (char32_t i = 0; leading < LEADING_COUNT && i < VOWEL_COUNT * TRAILING_COUNT; ++i)
        characters.push_back(FIRST_SYLLABLE + leading * VOWEL_COUNT * TRAILING_COUNT + i);
    return characters;
}

void sortMarks(KeyCharacter *begin, KeyCharacter *end)
{
    const auto byClass = [](KeyCharacter left, KeyCharacter right) {
        return left.combiningClass < right.combiningClass;
    };
    const auto isMark = [](KeyCharacter character) { return character.combiningClass != 0; };
    while (begin != end) {
        begin = std::find_if(begin, end, isMark);
        KeyCharacter *const runEnd = std::find_if_not(begin, end, isMark);
        // Sorting takes memory even when there is nothing to do, which is nearly always.
        if (!std::is_sorted(begin, runEnd, byClass))
            std::stable_sort(begin, runEnd, byClass);
        begin = runEnd;
    }
}

} // namespace tidemark
