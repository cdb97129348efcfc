#include "replace/TDFileModifier.h"

#include "replace/RewriteRun.h"

namespace tidemark {

std::unique_ptr<TDFileModifier> TDFileModifier::fileModifierWithFile(
    const FilePath &path, std::optional<FileDate> originalFileModificationDate, const MatchLines &matchLines,
    StringEncoding encoding, bool hadByteOrderMarker, bool transientBackupFile, TDError &error,
    const std::shared_ptr<UndoStepWriter> &undoStep)
{
    FilePath resolvedPath;
    RewriteRun run(RewriteRun::Flushing::EachFile, 1);
    run.setUndoStep(undoStep);
    run.add({path, originalFileModificationDate, lineChangesOf(matchLines), encoding, hadByteOrderMarker,
             transientBackupFile, 1},
            [&](const FileRewrite &rewrite, bool) {
                resolvedPath = rewrite.path();
                error = rewrite.error();
            });
    for (const RewriteRun::LateProblem &late : run.finish())
        error = late.error;
    return std::unique_ptr<TDFileModifier>(error ? nullptr : new TDFileModifier(resolvedPath));
}

} // namespace tidemark
