#include "matching/FindKind.h"

namespace tidemark {

namespace {

class PlainTextKind : public FindKind
{
public:
    PlainTextKind(const QString &findText, const FindOptions &options) : _pattern(findText, options.caseRule)
    {}

    TextRange firstRange(SearchedLine &line, TextRange searchRange, TDError &) const override
    {
        return _pattern.firstRange(line.text(), searchRange);
    }

protected:
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
