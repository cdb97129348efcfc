#include "session/StandingLines.h"

#include "reading/TDStringEncoding.h"
#include "text/LineEnds.h"

namespace tidemark {

namespace {

/// Whether each line with a number that was found is one of the listed lines, which can be several lines of
/// the file by now.
bool isListed(const FileMatches &found, const FindResultItems &listed)
{
    auto item = listed.begin();
    for (const auto &line : found.lines) {
        const auto ends = [](const TDMatchLine &before) {
            return before.lineNumber() + countLines(before.savedLineString());
        };
        while (item != listed.end() && ends(*(*item)->matchLine()) <= line->lineNumber())
            ++item;
        if (item == listed.end() || (*item)->matchLine()->lineNumber() > line->lineNumber())
            return false;
    }
    return true;
}

} // namespace

StandingLines::StandingLines(const FilePath &path)
{
    TDError error;
    _lines = FileLines::open(path, TDStringEncoding::userDefaultsEncoding(), error);
}

std::optional<FileDate> StandingLines::date() const
{
    return _lines ? std::optional(_lines->modificationDate()) : std::nullopt;
}

bool StandingLines::_stands(const QString &text, qint64 number)
{
    const qint64 count = countLines(text);
    while (_lines && !_lines->isLookedThrough() && _lines->knownLines() < number + count)
        _lines->lookFurther();
    const QList<FileLine> lines = _lines ? _lines->lines(number, count) : QList<FileLine>();
    if (count == 0 || lines.size() != count)
        return false;
    QString now;
    for (const FileLine &line : lines)
        now += line.text + u'\n';
    QString expected = text;
    expected.replace(QLatin1String("\r\n"), QLatin1String("\n")).replace(u'\r', u'\n');
    if (!expected.endsWith(u'\n'))
        expected += u'\n';
    return now == expected;
}

bool StandingLines::hold(const TDFindResultItem &file, const TDFindResultItem *found)
{
    for (const auto &item : file.children()) {
        const TDMatchLine *line = item->matchLine();
        if (line == nullptr || line->isUnsaved() || !_stands(line->savedLineString(), line->lineNumber()))
            return false;
    }
    return found == nullptr || (found->matches() != nullptr && isListed(*found->matches(), file.children()));
}

QList<StandingLines::Numbered> StandingLines::replacedLines(const TDFindResultItem &file)
{
    QList<Numbered> replaced;
    qint64 moved = 0;
    for (const auto &item : file.children()) {
        if (item->matchLine() == nullptr || item->matchLine()->isUnsaved())
            continue;
        const TDMatchLine &line = *item->matchLine();
        if (line.numberOfReplacedMatches() == 0)
            continue;
        const qint64 number = line.lineNumber() + moved;
        const QString saved = line.savedLineString();
        const QString found = line.foundLineString();
        const qint64 fewer = countLines(found) - countLines(saved);
        if (_stands(saved, number))
            replaced << Numbered{item->sharedMatchLine(), number};
        else if (fewer != 0 && _stands(found, number))
            moved += fewer;
    }
    return replaced;
}

} // namespace tidemark
