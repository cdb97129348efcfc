#pragma once

#include <QString>

#include <unicode/unorm2.h>

#include <random>
#include <vector>

namespace tidemark {

/// Canonically decomposed by the library.
inline QString decomposed(const QString &text)
{
    UErrorCode status = U_ZERO_ERROR;
    QString result(text.size() * 6 + 8, QChar());
    result.resize(unorm2_normalize(unorm2_getNFDInstance(&status), QStringView(text).utf16(),
                                   int(text.size()), reinterpret_cast<char16_t *>(result.data()),
                                   int(result.size()), &status));
    return result;
}

/// Random texts of the characters that searching by equivalence can go wrong on. Each alphabet is small, so
/// that a find text is likely to occur in a text.
class SearchAlphabet
{
public:
    QString text(unsigned mostCharacters)
    {
        const std::vector<std::u32string> &letters = alphabets()[_current];
        QString result;
        for (unsigned i = _random() % (mostCharacters + 1); i > 0; --i)
            result += fromCharacters(letters[_random() % letters.size()]);
        return result;
    }

    void chooseAlphabet() { _current = _random() % alphabets().size(); }

    static QString fromCharacters(const std::u32string &characters)
    {
        QString result;
        for (const char32_t c : characters)
            result += QChar::fromUcs4(c);
        return result;
    }

    static const std::vector<std::vector<std::u32string>> &alphabets()
    {
        static const std::vector<std::vector<std::u32string>> ALPHABETS = {
            {U"e", U"E", U"\u00E9", U"\u00C9", U"\u0301", U"\u0323", U"\u1EB9", U"\u0341", U"x"},
            {U"s", U"S", U"\u017F", U"\u00DF", U"\u1E9E", U"t", U"\uFB05", U"\uFB06", U"\u0323", U"\u0307",
             U"\u1E69", U"\u1E9B"},
            {U"f", U"F", U"i", U"I", U"\u0130", U"\u0131", U"\u0307", U"\uFB00", U"\uFB01", U"\uFB03", U"l",
             U"\uFB04"},
            {U"\u1100", U"\u1161", U"\u11A8", U"\uAC00", U"\uAC01", U"\u11FA", U"\uA960", U"\u0301"},
            {U"\u200D", U"\U0001F469", U"\U0001F4BB", U"\U0001F3FD", U"\u2764", U"\uFE0F", U"\u00A9", U"a",
             U"\u034F"},
            {U"\r", U"\n", U"a", U"A", U"\u0300", U"\u200C", U"\u0903"},
            {U"\xD83D", U"\xDE00", U"\U0001F600", U"a", U"\u0301", U"\U00010400", U"\U00010428", U"\xD801"},
            {U"k", U"K", U"\u212A", U"\u00C5", U"\u00E5", U"\u212B", U"a", U"A", U"\u030A", U"\u0301",
             U"\u01FB"},
            {U"\u03C3", U"\u03C2", U"\u03A3", U"\u03BF", U"\u0301", U"\u1F79", U"\u03CC"},
            {U"\u03B1", U"\u0391", U"\u03B9", U"\u0399", U"\u0345", U"\u1FBE", U"\u1FB3", U"\u1FBC",
             U"\u0301", U"\u0313", U"\u1F80", U"\u1FB4", U"\u03B8"},
            {U"\u0308", U"\u0301", U"\u0344", U"\u03B9", U"\u0390", U"\u0345", U"\u0323"},
            {U"\u0915", U"\u094D", U"\u0937", U"\u093E", U"\u093C", U"\u0958", U"\u200D"},
            {U"\u0F71", U"\u0F72", U"\u0F73", U"\u0F74", U"\u0F75", U"\u0F40"},
            {U"\U00011099", U"\U000110BA", U"\U0001109A", U"\U0002F800", U"\u4E3D", U"\U0001D15E",
             U"\U0001D157", U"\U0001D165"},
            {U"\u0438", U"\u0418", U"\u0439", U"\u0419", U"\u0306", U"\u0432", U"\u1C80", U"n", U"\u02BC",
             U"\u0149"},
            {U"\uFFFF", U"\U00010000", U"\uFEFF", U"a", U"B", U"\u00E9", U"f", U"\u0345", {U'\0'}},
        };
        return ALPHABETS;
    }

private:
    std::minstd_rand _random{20120234};
    size_t _current = 0;
};

} // namespace tidemark
