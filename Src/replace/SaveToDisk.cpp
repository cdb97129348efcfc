#include "replace/SaveToDisk.h"

#include "foundation/TDFileCommon.h"
#include "reading/TDStringEncoding.h"
#include "replace/TDFileModifier.h"
#include "text/LineEnds.h"

#include <QSet>

namespace tidemark {

namespace {

void forgetSavedLines(const MatchLines &lines)
{
    for (const auto &line : lines)
        line->setSavedLineString(QStringLiteral(""));
}

/// After a save the lines stand in the file as they are in memory. Where a replacement brought line ends into
/// a line, or emptied one, the numbers of the lines behind it follow the file.
void followSavedLines(const MatchLines &allLines, const MatchLines &savedLines,
                      const std::function<void()> &nowAndThen)
{
    const bool isEachSaved = savedLines.size() == allLines.size();
    QSet<const TDMatchLine *> saved;
    for (const auto &line : savedLines) {
        if (!isEachSaved)
            saved.insert(line.get());
    }
    qint64 offset = 0;
    qsizetype count = 0;
    bool isUncertain = false;
    for (const auto &line : allLines) {
        if (++count % LINES_BETWEEN_CALLS == 0)
            nowAndThen();
        line->setLineNumber(line->lineNumber() + offset);
        if (!line->isUnsaved() || !(isEachSaved || saved.contains(line.get())))
            continue;
        // Behind a lone CR such a line has become part of the one before, and where the later ones stand
        // can't be told from here: a text that no line has makes the next rewrite refuse them.
        isUncertain = isUncertain || (line->lineNumber() > 1 && line->matchLineString().startsWith(u'\n') &&
                                      !line->savedLineString().startsWith(u'\n'));
        if (!line->savedLineString().isNull())
            offset += countLines(line->matchLineString()) - countLines(line->savedLineString());
        line->setSavedLineString(line->matchLineString());
    }
    if (isUncertain)
        forgetSavedLines(allLines);
}

/// What a person chose for the file holds for writing it, too.
StringEncoding encodingToReadIn(const TDFindResultItem &file)
{
    return file.encoding().source == EncodingSource::Chosen ? file.encoding().encoding
                                                            : TDStringEncoding::userDefaultsEncoding();
}

} // namespace

FileRewrite::Request rewriteRequest(const TDFindResultItem &file, const MatchLines &lines,
                                    const IsFileInSearchLocations &isFileInSearchLocations,
                                    const std::function<void()> &nowAndThen)
{
    return {file.path(),
            file.modificationDate(),
            lineChangesOf(lines, nowAndThen),
            encodingToReadIn(file),
            file.includesBOM(),
            isFileInSearchLocations(file.path())};
}

void noteSavedLines(TDFindResultItem &file, const MatchLines &lines, const std::function<void()> &nowAndThen)
{
    if (file.matches() != nullptr)
        followSavedLines(file.matches()->lines, lines, nowAndThen);
}

bool saveLinesToDisk(TDFindResultItem &file, const MatchLines &lines,
                     const IsFileInSearchLocations &isFileInSearchLocations, TDError &error,
                     const std::shared_ptr<UndoStepWriter> &undoStep)
{
    if (!TDFileModifier::fileModifierWithFile(file.path(), file.modificationDate(), lines,
                                              encodingToReadIn(file), file.includesBOM(),
                                              isFileInSearchLocations(file.path()), error, undoStep))
        return false;
    noteSavedLines(file, lines);
    return true;
}

bool saveToDiskFindResultItem(TDFindResultItem &file, const IsFileInSearchLocations &isFileInSearchLocations,
                              TDError &error)
{
    if (file.matches() == nullptr || file.matches()->lines.isEmpty())
        return true;
    if (!saveLinesToDisk(file, file.matches()->lines, isFileInSearchLocations, error))
        return false;
    file.setModificationDate(TDFileCommon::fileModificationDate(file.path()));
    return true;
}

} // namespace tidemark
