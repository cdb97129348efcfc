#include "support/ResultNodes.h"

namespace tidemark::test {

std::shared_ptr<TDFindResultItem> fileNode(const QByteArray &path, const QStringList &lines)
{
    auto file = TDFindResultItem::initWithFile(FilePath(path), {}, QStringLiteral("foo"), false);
    MatchLines matchLines;
    FindResultItems items;
    for (const QString &text : lines) {
        auto line = std::make_shared<TDMatchLine>();
        line->setMatchLineString(text);
        line->setLineNumber(matchLines.size() + 1);
        for (qsizetype found = text.indexOf(QLatin1String("foo")); found >= 0;
             found = text.indexOf(QLatin1String("foo"), found + 3))
            line->appendMatchRange({found, 3});
        matchLines << line;
        items << TDFindResultItem::initWithMatchLine(line, file.get());
    }
    file->setMatches({matchLines, {}, false, {}});
    file->setMatchLines(items);
    return file;
}

std::shared_ptr<TDFindResultItem> failedFileNode(const QByteArray &path, const QString &reason)
{
    const TDError error = TDError::initalizePresentErrorWithCode(4, QStringLiteral("It failed."), reason);
    return TDFindResultItem::initWithFailedFile(FilePath(path), {}, error);
}

} // namespace tidemark::test
