#pragma once

#include "text/PlainTextPattern.h"
#include "text/SearchAlphabet.h"

#include <unicode/ubrk.h>
#include <unicode/uchar.h>
#include <unicode/ustring.h>

#include <memory>

namespace tidemark {

/// The definition itself: try every start and every end, normalise and fold what lies between with the
/// library, ask its break iterator about the end.
class PlainTextOracle
{
public:
    PlainTextOracle() { _breaks.reset(ubrk_open(UBRK_CHARACTER, "", nullptr, 0, &_status)); }

    static QString key(const QString &text, CaseRule caseRule)
    {
        const QString source = decomposed(text);
        if (caseRule == CaseRule::Exact)
            return source;
        UErrorCode status = U_ZERO_ERROR;
        QString folded(source.size() * 3 + 8, QChar());
        folded.resize(u_strFoldCase(reinterpret_cast<char16_t *>(folded.data()), int(folded.size()),
                                    QStringView(source).utf16(), int(source.size()), U_FOLD_CASE_DEFAULT,
                                    &status));
        return decomposed(folded);
    }

    TextRange find(const QString &text, const QString &findText, CaseRule caseRule)
    {
        if (findText.isEmpty())
            return TextRange::notFound();
        const QString wanted = key(findText, caseRule);
        for (qsizetype start = 0; start < text.size(); ++start) {
            for (qsizetype end = start + 1; end <= text.size(); ++end) {
                if (!isWithinPair(text, end) && key(text.mid(start, end - start), caseRule) == wanted &&
                    mayEnd(text, end))
                    return {start, end - start};
            }
        }
        return TextRange::notFound();
    }

private:
    static bool isWithinPair(const QString &text, qsizetype position)
    {
        return position < text.size() && text[position].isLowSurrogate() &&
               text[position - 1].isHighSurrogate();
    }

    bool mayEnd(const QString &text, qsizetype end)
    {
        if (end == text.size())
            return true;
        UChar32 next;
        UChar32 previous;
        U16_GET(text.utf16(), 0, end, text.size(), next);
        U16_GET(text.utf16(), 0, end - 1, text.size(), previous);
        if (u_hasBinaryProperty(next, UCHAR_GRAPHEME_EXTEND) ||
            u_hasBinaryProperty(next, UCHAR_EMOJI_MODIFIER))
            return false;
        if (previous == 0x034F)
            return false;
        if (previous != 0x200D && !(previous >= 0x1100 && previous <= 0x11F9) &&
            u_getCombiningClass(previous) != 9)
            return true;
        ubrk_setText(_breaks.get(), QStringView(text).utf16(), int(text.size()), &_status);
        return ubrk_isBoundary(_breaks.get(), int(end));
    }

    struct Closer
    {
        void operator()(UBreakIterator *breaks) const { ubrk_close(breaks); }
    };
    UErrorCode _status = U_ZERO_ERROR;
    std::unique_ptr<UBreakIterator, Closer> _breaks;
};

} // namespace tidemark
