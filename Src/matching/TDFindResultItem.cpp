#include "matching/TDFindResultItem.h"

#include <atomic>
#include <vector>

namespace tidemark {

namespace {

constexpr double NAME_FONT_SIZE = 10;
std::atomic<quint64> filesFound = 0;
/// Begins anew where it is full: no file has so many.
std::atomic<quint32> leavesFound = 0;

StyledText redText(const QString &text)
{
    StyledText styled;
    styled.text = text;
    styled.font = {QString(), NAME_FONT_SIZE};
    styled.lineBreakMode = LineBreakMode::TruncateInMiddle;
    styled.runs << StyledRun{styled.wholeRange(), TD_COLOR_RED, {}, false, {}};
    return styled;
}

} // namespace

std::shared_ptr<TDFindResultItem> TDFindResultItem::initWithFile(const FilePath &path,
                                                                 std::optional<FileDate> modificationDate,
                                                                 const QString &findText, bool includesBOM)
{
    auto item = std::make_shared<TDFindResultItem>();
    item->_fileFields = std::make_unique<FileFields>();
    item->_fileFields->number = ++filesFound;
    item->_fileFields->path = path;
    item->_fileFields->modificationDate = modificationDate;
    item->_fileFields->findText = findText;
    item->_fileFields->includesBOM = includesBOM;
    return item;
}

std::shared_ptr<TDFindResultItem>
TDFindResultItem::initWithMatchLine(const std::shared_ptr<TDMatchLine> &matchLine, TDFindResultItem *parent)
{
    auto item = std::make_shared<TDFindResultItem>();
    item->_matchLine = matchLine;
    item->_parent = parent;
    item->_leaf = ++leavesFound;
    return item;
}

FindResultItems TDFindResultItem::initWithMatchLines(const MatchLines &matchLines, TDFindResultItem *parent)
{
    const auto nodes = std::make_shared<std::vector<TDFindResultItem>>(size_t(matchLines.size()));
    const quint32 before = leavesFound.fetch_add(quint32(matchLines.size()));
    FindResultItems items;
    items.reserve(matchLines.size());
    for (qsizetype index = 0; index < matchLines.size(); ++index) {
        TDFindResultItem &node = (*nodes)[size_t(index)];
        node._matchLine = matchLines[index];
        node._parent = parent;
        node._leaf = before + 1 + quint32(index);
        items.emplaceBack(nodes, &node);
    }
    return items;
}

std::shared_ptr<TDFindResultItem> TDFindResultItem::initWithError(const TDError &error,
                                                                  TDFindResultItem *parent)
{
    auto item = std::make_shared<TDFindResultItem>();
    item->_error = error;
    item->_parent = parent;
    item->_leaf = ++leavesFound;
    return item;
}

std::shared_ptr<TDFindResultItem>
TDFindResultItem::initWithFailedFile(const FilePath &path, std::optional<FileDate> modificationDate,
                                     const TDError &error)
{
    auto file = initWithFile(path, modificationDate, QString(), false);
    file->setMatchLines({initWithError(error, file.get())});
    return file;
}

NodeIdentity TDFindResultItem::identity() const
{
    const TDFindResultItem *file = isMatchLine() ? _parent : this;
    return {file != nullptr ? file->_file().number : 0, _leaf};
}

const TDFindResultItem::FileFields &TDFindResultItem::_file() const
{
    static const FileFields NONE;
    return _fileFields ? *_fileFields : NONE;
}

void TDFindResultItem::setMatchLines(FindResultItems items)
{
    // Read only, as the list may be shared and would be copied.
    for (qsizetype index = 0; index < items.size(); ++index)
        items.at(index)->setPosition(index);
    _fileFields->matchLines = std::move(items);
}

void TDFindResultItem::setMatches(FileMatches matches)
{
    _fileFields->encoding = matches.encoding;
    _fileFields->matches = std::move(matches);
}

void TDFindResultItem::add(FoundPart part)
{
    FileFields &fields = *_fileFields;
    if (part.kind == FoundPart::Kind::Instead) {
        fields.matches = std::move(part.matches);
        setMatchLines(part.children);
    } else if (part.kind == FoundPart::Kind::More) {
        qsizetype position = fields.matchLines.size();
        for (const auto &child : std::as_const(part.children))
            child->setPosition(position++);
        fields.matchLines.append(std::move(part.children));
        fields.matches->add(*std::move(part.matches));
    }
}

std::optional<qint32> TDFindResultItem::matchCount() const
{
    if (_matchLine)
        return 0;
    if (matches() == nullptr || matches()->lines.isEmpty())
        return {};
    return static_cast<qint32>(matches()->count());
}

QString TDFindResultItem::filenameMatchLineSortKey() const
{
    if (_matchLine)
        return QStringLiteral("");
    return _fileFields ? FilePath(path().lastPathComponent()).displayText() : QString();
}

QString TDFindResultItem::displayPath() const
{
    return path().deletingLastPathComponent().displayText();
}

StyledText TDFindResultItem::displayName() const
{
    return isMatchLine() ? StyledText() : redText(path().displayText());
}

StyledText TDFindResultItem::displayError() const
{
    if (!_error)
        return {};
    StyledText styled = redText(_error.localizedFailureReason());
    styled.runs.first().background = TD_COLOR_WHITE;
    return styled;
}

} // namespace tidemark
