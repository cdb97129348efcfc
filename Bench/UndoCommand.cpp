#include "UndoCommand.h"

#include "replace/MatchLineReplacement.h"
#include "replace/RewriteUndo.h"

#include <cstdio>

namespace tidemark {

namespace {

/// The line end is the old line's; what stands in front of it is new, even if it looks like one.
QStringView withoutLineEnd(QStringView newLine, QStringView oldLine)
{
    if (oldLine.endsWith(u"\r\n"))
        newLine.chop(2);
    else if (oldLine.endsWith(u'\n') || oldLine.endsWith(u'\r'))
        newLine.chop(1);
    return newLine;
}

const char *nameOf(UndoStepKind kind)
{
    return kind == UndoStepKind::Undo ? "undo" : "redo";
}

void printFile(const RewriteUndo::File &file)
{
    std::printf("%s\t%s\n", file.isDone ? "done" : "refused",
                file.path.bytes().toPercentEncoding("/").constData());
    if (file.problem != RewriteProblem::None)
        std::fprintf(stderr, "%s: %s\n", file.path.cString(), nameOfProblem(file.problem).constData());
}

const char *problemOf(const RewriteUndo::Outcome &outcome)
{
    switch (outcome.end) {
    case RewriteUndo::End::Complete:
    case RewriteUndo::End::Stopped:
        return outcome.isStepDamaged ? "the step is damaged: not all of its files are known" : nullptr;
    case RewriteUndo::End::NoStep:
        break;
    case RewriteUndo::End::InUse:
        return "the step is in use";
    case RewriteUndo::End::Unreadable:
        return "the step can't be read";
    }
    return "there is no such step";
}

} // namespace

bool printPreview(const FindResultItems &files, const DriverOptions &options, TDError &error)
{
    const TDReplacement replacement(options.findText, *options.replaceText, FindOptions::withUserDefaults(),
                                    ReplacementExtent::EveryOccurrence);
    for (const auto &file : files) {
        for (const auto &item : file->matchLines()) {
            if (item->matchLine() == nullptr)
                continue;
            const ReplacedLine line = replacedLine(
                *item->matchLine(), replacement, [] { return false; }, error);
            if (error)
                return false;
            const QByteArray output =
                file->path().bytes() + ':' + QByteArray::number(item->matchLine()->lineNumber()) + ':' +
                withoutLineEnd(line.text, item->matchLine()->matchLineString()).toUtf8() + '\n';
            std::fwrite(output.constData(), 1, size_t(output.size()), stdout);
        }
    }
    return true;
}

bool takeBackLastStep(UndoStepKind kind)
{
    const std::optional<UndoJournal> journal = UndoJournal::current();
    const std::optional<UndoStep> step = journal ? journal->lastStep(kind) : std::nullopt;
    if (!step) {
        std::fprintf(stderr, "nothing to %s\n", nameOf(kind));
        return false;
    }
    const std::atomic<bool> stop = false;
    const RewriteUndo::Outcome outcome = RewriteUndo(*journal, stop).takeBack(step->id);
    for (const RewriteUndo::File &file : outcome.files)
        printFile(file);
    const char *problem = problemOf(outcome);
    if (problem != nullptr)
        std::fprintf(stderr, "%s\n", problem);
    return problem == nullptr && outcome.filesRefused == 0;
}

void printHistory()
{
    const std::optional<UndoJournal> journal = UndoJournal::current();
    for (const UndoStep &step : journal ? journal->steps() : QList<UndoStep>()) {
        std::printf("%s\t%s\t%lld\t%lld\t%lld\t%s\t%s\n", nameOf(step.kind),
                    step.date.toUTC().toString(Qt::ISODate).toLatin1().constData(),
                    static_cast<long long>(step.files), static_cast<long long>(step.matches),
                    static_cast<long long>(step.size), step.findText.toUtf8().toPercentEncoding().constData(),
                    step.replaceText.toUtf8().toPercentEncoding().constData());
    }
}

const char *nameOfUndoKeeping(UndoKeeping keeping)
{
    switch (keeping) {
    case UndoKeeping::Off:
        break;
    case UndoKeeping::Nothing:
        return "nothing";
    case UndoKeeping::Kept:
        return "kept";
    case UndoKeeping::TooLarge:
        return "too-large";
    case UndoKeeping::Failed:
        return "failed";
    }
    return "off";
}

} // namespace tidemark
