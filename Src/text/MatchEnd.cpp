#include "text/MatchEnd.h"

#include "text/CharacterFolding.h"

#include <unicode/uchar.h>
#include <unicode/uscript.h>

namespace tidemark {

namespace {

constexpr char16_t FIRST_EXTENDER = 0x0300;
constexpr char32_t GRAPHEME_JOINER = 0x034F;
constexpr char32_t ZERO_WIDTH_JOINER = 0x200D;
constexpr int VIRAMA_CLASS = 9;

int clusterBreak(char32_t character)
{
    return u_getIntPropertyValue(UChar32(character), UCHAR_GRAPHEME_CLUSTER_BREAK);
}

bool isPictograph(char32_t character)
{
    return u_hasBinaryProperty(UChar32(character), UCHAR_EXTENDED_PICTOGRAPHIC);
}

bool isExtender(char32_t character)
{
    return u_hasBinaryProperty(UChar32(character), UCHAR_GRAPHEME_EXTEND) ||
           u_hasBinaryProperty(UChar32(character), UCHAR_EMOJI_MODIFIER);
}

char32_t characterBefore(QStringView stretch, qsizetype position)
{
    const char16_t *units = stretch.utf16();
    const bool isPair = position > 1 && QChar::isLowSurrogate(units[position - 1]) &&
                        QChar::isHighSurrogate(units[position - 2]);
    return characterAt(units, position - (isPair ? 2 : 1), position);
}

bool followsPictograph(QStringView stretch, qsizetype position)
{
    while (position > 0) {
        const char32_t character = characterBefore(stretch, position);
        if (clusterBreak(character) != U_GCB_EXTEND)
            return isPictograph(character);
        position -= unitCount(character);
    }
    return false;
}

/// The scripts in which a virama joins two consonants into one cluster.
bool isOfConjunctScript(char32_t character)
{
    switch (u_getIntPropertyValue(UChar32(character), UCHAR_SCRIPT)) {
    case USCRIPT_BENGALI:
    case USCRIPT_DEVANAGARI:
    case USCRIPT_GUJARATI:
    case USCRIPT_MALAYALAM:
    case USCRIPT_ORIYA:
    case USCRIPT_TELUGU:
        return true;
    default:
        return false;
    }
}

bool hasSyllabicCategory(char32_t character, int category)
{
    return u_getIntPropertyValue(UChar32(character), UCHAR_INDIC_SYLLABIC_CATEGORY) == category &&
           isOfConjunctScript(character);
}

bool isConjunctMark(char32_t character)
{
    return character == ZERO_WIDTH_JOINER ||
           (clusterBreak(character) == U_GCB_EXTEND && u_getCombiningClass(UChar32(character)) != 0);
}

bool isWithinConjunct(QStringView stretch, qsizetype position, char32_t next)
{
    if (!hasSyllabicCategory(next, U_INSC_CONSONANT))
        return false;
    bool hasVirama = false;
    while (position > 0) {
        const char32_t character = characterBefore(stretch, position);
        if (!isConjunctMark(character))
            return hasVirama && hasSyllabicCategory(character, U_INSC_CONSONANT);
        hasVirama = hasVirama || hasSyllabicCategory(character, U_INSC_VIRAMA);
        position -= unitCount(character);
    }
    return false;
}

bool isWithinSyllable(int previous, int next)
{
    switch (previous) {
    case U_GCB_L:
        return next == U_GCB_L || next == U_GCB_V || next == U_GCB_LV || next == U_GCB_LVT;
    case U_GCB_V:
        return next == U_GCB_V || next == U_GCB_T;
    case U_GCB_T:
        return next == U_GCB_T;
    default:
        return false;
    }
}

/// Only for the few kinds of `previous` that need the check.
bool isClusterBoundary(QStringView stretch, qsizetype position, char32_t previous, char32_t next)
{
    const int nextBreak = clusterBreak(next);
    if (nextBreak == U_GCB_EXTEND || nextBreak == U_GCB_ZWJ || nextBreak == U_GCB_SPACING_MARK)
        return false;
    if (isWithinConjunct(stretch, position, next))
        return false;
    if (previous == ZERO_WIDTH_JOINER)
        return !isPictograph(next) || !followsPictograph(stretch, position - 1);
    return !isWithinSyllable(clusterBreak(previous), nextBreak);
}

bool needsClusterBoundary(char32_t previous)
{
    return previous == ZERO_WIDTH_JOINER || (previous >= 0x1100 && previous <= 0x11F9) ||
           u_getCombiningClass(UChar32(previous)) == VIRAMA_CLASS;
}

} // namespace

bool mayMatchEndAt(QStringView stretch, qsizetype position)
{
    if (position == stretch.size())
        return true;
    const char16_t *units = stretch.utf16();
    if (units[position] < FIRST_EXTENDER && units[position - 1] < FIRST_EXTENDER)
        return true;
    const char32_t next = characterAt(units, position, stretch.size());
    if (isExtender(next))
        return false;
    const char32_t previous = characterBefore(stretch, position);
    // It joins whatever stands around it, which the rules for clusters don't say.
    if (previous == GRAPHEME_JOINER)
        return false;
    return !needsClusterBoundary(previous) || isClusterBoundary(stretch, position, previous, next);
}

} // namespace tidemark
