#pragma once

#include "foundation/TDError.h"
#include "matching/FindOptions.h"
#include "matching/TDFindResultItem.h"
#include "replace/SaveToDisk.h"
#include "replace/UndoStepWriter.h"

#include <QString>

namespace tidemark {

/// What is replaced with what, and where the files came from. Made when a replace command starts: the options
/// are by default those of the settings at that moment.
struct ReplaceRequest
{
    QString findText;
    QString replaceText;
    IsFileInSearchLocations isFileInSearchLocations;
    FindOptions options = FindOptions::withUserDefaults();
    /// What a single replacement becomes a part of; null: it can't be undone. A run makes a step of its own.
    std::shared_ptr<UndoStepWriter> undoStep = {};
};

/// Replaces the one highlighted match of a match line.
class TDReplaceEngine
{
public:
    enum class Save { No, Yes };

    /// True only when the match was removed (its replacement is empty) and another one follows it in the
    /// line, so that the highlight stands on the next match already. False in every other case; the error
    /// then tells of a failure, after which line and ranges are as they were. With Save::Yes the line is
    /// written to its file at once, and the file node's remark says why that failed, or goes. The node's date
    /// is read anew also after a failed rewrite, so that a second attempt is measured against it. Error
    /// nodes, and lines without a highlighted match, are left alone.
    static bool performReplaceWithSave(Save save, TDFindResultItem &item, const ReplaceRequest &request,
                                       TDError &error);
};

} // namespace tidemark
