#include "session/StayingMatches.h"

#include "session/ReplacementPreview.h"

#include <QElapsedTimer>

#include <utility>

namespace tidemark {

namespace {

constexpr std::chrono::milliseconds LONGEST_WAIT(400);
constexpr qsizetype LINES_AT_ONCE = 1000;

quint64 openMatches(const TDMatchLine &line)
{
    return line.numberOfMatches() - line.numberOfReplacedMatches();
}

/// Adds up line by line.
class StayingByFile
{
public:
    void add(const TDFindResultItem *file, quint64 open, quint64 staying)
    {
        if (std::exchange(_file, file) != file)
            _endFile();
        _openInFile += open;
        _stayingInFile += staying;
    }
    StayingMatches sum()
    {
        _endFile();
        return _sum;
    }

private:
    void _endFile()
    {
        _sum.matches += _stayingInFile;
        _sum.files += _openInFile > 0 && _openInFile == _stayingInFile ? 1 : 0;
        _openInFile = _stayingInFile = 0;
    }

    const TDFindResultItem *_file = nullptr;
    quint64 _openInFile = 0;
    quint64 _stayingInFile = 0;
    StayingMatches _sum;
};

} // namespace

std::optional<StayingMatches> stayingMatches(const FindResultItems &items, const SearchTerms &terms,
                                             const QString &replaceText)
{
    QElapsedTimer timer;
    timer.start();
    const ReplacementPreview preview(terms.findText, replaceText, terms.options);
    StayingByFile byFile;
    for (qsizetype next = 0; next < items.size();) {
        FindResultItems chosen;
        QList<const TDMatchLine *> lines;
        for (; next < items.size() && lines.size() < LINES_AT_ONCE; ++next) {
            if (items[next]->matchLine() == nullptr)
                continue;
            chosen << items[next];
            lines << items[next]->matchLine();
        }
        const std::chrono::milliseconds left = LONGEST_WAIT - std::chrono::milliseconds(timer.elapsed());
        const auto staying = left.count() > 0 ? preview.staying(lines, left) : std::nullopt;
        if (!staying)
            return {};
        for (qsizetype index = 0; index < chosen.size(); ++index)
            byFile.add(chosen[index]->parent(), openMatches(*lines[index]), (*staying)[index]);
    }
    return byFile.sum();
}

} // namespace tidemark
