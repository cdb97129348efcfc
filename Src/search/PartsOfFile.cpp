#include "search/PartsOfFile.h"

#include "foundation/LocalizedText.h"
#include "reading/TextBlockReader.h"

namespace tidemark {

namespace {

QString reasonOf(LineSearch limit)
{
    switch (limit) {
    case LineSearch::TooLong:
        return localizedString("Line %lu: the expression takes longer than a second there.");
    case LineSearch::TooMuchMemory:
        return localizedString("Line %lu: the expression takes too much memory there.");
    default:
        return localizedString("Line %lu: the expression caused an internal error there.");
    }
}

FindResultItems childrenOf(TDFindResultItem &node, const FileMatches &matches, const TDError &limitError)
{
    FindResultItems children = TDFindResultItem::initWithMatchLines(matches.lines, &node);
    if (limitError)
        children << TDFindResultItem::initWithError(limitError, &node);
    return children;
}

} // namespace

TDError errorOfLimits(const FilePath &path, const FileMatches::LimitedLines &lines)
{
    if (lines.count == 0)
        return {};
    QString reason = formatted(reasonOf(lines.reason), {lines.firstNumber});
    if (lines.count > 1)
        reason += u' ' + formatted(localizedString("So it is on %lu lines in all."), {lines.count});
    return TDError::initalizePresentErrorWithCode(
        TD_ERROR_CODE_TD_FILE_READER_FILE_OPEN_ERROR,
        formatted(localizedString("Sorry, it was not possible to search file ‘%@’."), {path.displayText()}),
        reason);
}

std::shared_ptr<TDFindResultItem> newFileNode(const FileToRead &file, const QString &findText,
                                              std::optional<FileDate> date, bool includesBOM,
                                              const FileMatches &matches, const TDError &limitError)
{
    auto node = TDFindResultItem::initWithFile(
        file.path, date ? date : TDFileCommon::fileModificationDate(file.path), findText, includesBOM);
    node->setMatchLines(childrenOf(*node, matches, limitError));
    node->setMatches(matches);
    return node;
}

void PartsOfFile::handOver(const FileMatches &matches)
{
    if (_node) {
        _handOver({_node, FoundPart::Kind::More, childrenOf(*_node, matches, {}), matches});
        return;
    }
    _node =
        newFileNode(_file, _findText, _reader.modificationDate(), _reader.hadByteOrderMarker(), matches, {});
    _node->setComesInParts();
    _handOver({_node, FoundPart::Kind::First, {}, matches});
}

void PartsOfFile::handOverRest(const FileMatches &matches, const TDError &limitError, bool isAll)
{
    const FindResultItems children = childrenOf(*_node, matches, limitError);
    if (isAll && matches.lines.isEmpty())
        _handOver({_node, FoundPart::Kind::Instead, children, {}});
    else if (isAll || !children.isEmpty())
        _handOver({_node, isAll ? FoundPart::Kind::Instead : FoundPart::Kind::More, children, matches});
}

void PartsOfFile::handOverFailure(const TDError &error)
{
    _handOver({_node, FoundPart::Kind::Instead, {TDFindResultItem::initWithError(error, _node.get())}, {}});
}

void PartsOfFile::takeBack()
{
    _handOver({_node, FoundPart::Kind::Instead, {}, {}});
}

} // namespace tidemark
