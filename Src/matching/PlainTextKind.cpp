#include "matching/FindKind.h"
#include "matching/WholeWords.h"

namespace tidemark {

namespace {

class PlainTextKind : public FindKind
{
public:
    PlainTextKind(const QString &findText, const FindOptions &options)
        : FindKind(options), _pattern(findText, options.caseRule)
    {}

    TextRange firstRange(SearchedLine &line, TextRange searchRange, TDError &) const override
    {
        return _pattern.firstRange(line.text(), searchRange);
    }

protected:
    bool isWholeWord(SearchedLine &line, TextRange range) const override
    {
        return tidemark::isWholeWord(line.text(), range);
    }
    qint64 positionBehindFailedWord(SearchedLine &line, TextRange range) const override
    {
        return tidemark::positionBehindFailedWord(line.text(), range);
    }
    std::unique_ptr<const LinePrefilter> makePrefilter() const override
    {
        return LinePrefilter::forPlainText(_pattern);
    }

private:
    PlainTextPattern _pattern;
};

} // namespace

std::shared_ptr<const FindKind> makePlainTextKind(const QString &findText, const FindOptions &options)
{
    return std::make_shared<PlainTextKind>(findText, options);
}

} // namespace tidemark
