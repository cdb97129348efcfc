#include "session/StandingLines.h"

#include "text/LineEnds.h"

namespace tidemark {

namespace {

/// Without looking at more than there is in memory.
bool readTheSame(const TDMatchLine &one, const TDMatchLine &other)
{
    const bool areUnchanged = !one.unchangedUtf8().isNull() && !other.unchangedUtf8().isNull();
    return areUnchanged ? one.unchangedUtf8() == other.unchangedUtf8()
                        : one.savedLineString() == other.savedLineString();
}

/// Behind the line, which can be several by now.
qint64 endOf(const TDMatchLine &line, qint64 number)
{
    const bool isUnchanged = !line.unchangedUtf8().isNull();
    return number + (isUnchanged ? 1 : countLines(line.savedLineString()));
}

} // namespace

StandingLines::StandingLines(const FilePath &path, StringEncoding encoding,
                             const std::atomic<bool> &shouldStop)
    : _shouldStop(shouldStop)
{
    TDError error;
    _lines = FileLines::open(path, encoding, error);
}

std::optional<FileDate> StandingLines::date() const
{
    return _lines ? std::optional(_lines->modificationDate()) : std::nullopt;
}

bool StandingLines::_stands(const QString &text, qint64 number)
{
    const qint64 count = countLines(text);
    while (_lines && !_shouldStop && !_lines->isLookedThrough() && _lines->knownLines() < number + count)
        _lines->lookFurther();
    if (!_lines || _shouldStop || count == 0)
        return false;
    const QList<FileLine> lines = _lines->lines(number, count);
    if (lines.size() != count)
        return false;
    if (count == 1)
        return withoutLineEnd(QStringView(text)) == lines.first().text;
    QString now;
    for (const FileLine &line : lines)
        now += line.text + u'\n';
    QString expected = text;
    expected.replace(QLatin1String("\r\n"), QLatin1String("\n")).replace(u'\r', u'\n');
    if (!expected.endsWith(u'\n'))
        expected += u'\n';
    return now == expected;
}

bool StandingLines::hold(const TDFindResultItem &file, const QList<qint64> &lineNumbers,
                         const TDFindResultItem *found)
{
    if (found != nullptr && found->matches() == nullptr)
        return false;
    const MatchLines lines = found != nullptr ? found->matches()->lines : MatchLines();
    auto next = lines.begin();
    for (qsizetype index = 0; index < file.children().size(); ++index) {
        const TDMatchLine *line = file.children()[index]->matchLine();
        if (line == nullptr || line->isUnsaved() || index >= lineNumbers.size())
            return false;
        const qint64 number = lineNumbers[index];
        // One that isn't listed.
        if (next != lines.end() && (*next)->lineNumber() < number)
            return false;
        const bool isFound =
            next != lines.end() && (*next)->lineNumber() == number && readTheSame(**next, *line);
        if (!isFound && (line->numberOfReplacedMatches() == 0 || !_stands(line->savedLineString(), number)))
            return false;
        while (next != lines.end() && (*next)->lineNumber() < endOf(*line, number))
            ++next;
    }
    return next == lines.end();
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
