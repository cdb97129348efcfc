#include "DriverOptions.h"
#include "InterruptedCommand.h"
#include "SearchRun.h"
#include "UndoCommand.h"

#include "foundation/LocalizedText.h"
#include "foundation/UserDefaults.h"
#include "reading/TDStringEncoding.h"
#include "search/RegisterUserDefaults.h"
#include "session/FindResults.h"
#include "session/ReplaceControl.h"
#include "text/TextEncoding.h"

#include <QCoreApplication>
#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <array>
#include <cstdio>
#include <sys/resource.h>
#include <vector>

using namespace tidemark;

namespace {

enum ExitStatus {
    SEARCH_ENDED = 0,
    MALFORMED_EXPRESSION = 1,
    WRONG_USAGE = 2,
    NOT_PUT_BACK = 1,
    NOT_TAKEN_BACK = 1
};

int wrongUsage(const QByteArray &problem)
{
    std::fprintf(stderr, "tidemark-bench: %s\n%s", problem.constData(), DRIVER_USAGE);
    return WRONG_USAGE;
}

/// Puts the options into a store of settings of this process; the user's is never touched.
bool applySettings(const DriverOptions &options, QByteArray &problem)
{
    UserDefaults::setStandard(UserDefaults::inMemory());
    UserDefaults &settings = UserDefaults::standard();
    registerUserDefaults(settings);
    settings.setObject(TD_USER_DEFAULTS_NAME_REGULAR_EXPRESSION, options.isRegularExpression);
    settings.setObject(TD_USER_DEFAULTS_NAME_UNICODE_REGULAR_EXPRESSION, options.isUnicode);
    settings.setObject(TD_USER_DEFAULTS_NAME_WHOLE_WORDS, options.wholeWords);
    settings.setObject(TD_USER_DEFAULTS_NAME_IGNORE_CASE, !options.isCaseSensitive);
    settings.setObject(TD_USER_DEFAULTS_NAME_CREATE_BACKUP_BEFORE_REPLACING, options.makesBackups);
    settings.setObject(TD_USER_DEFAULTS_NAME_LEAVE_OUT_PATTERNS, options.leaveOutPatterns.join(u' '));
    settings.setObject(TD_USER_DEFAULTS_NAME_SEARCH_HIDDEN_FILES, options.searchesHiddenFiles);
    settings.setObject(TD_USER_DEFAULTS_NAME_OBEY_IGNORE_FILES, options.obeysIgnoreFiles);
    settings.setObject(TD_USER_DEFAULTS_NAME_LARGEST_FILE_SIZE, options.largestFileSize);
    setKindsInForce(options.kinds);
    if (options.encoding == QLatin1String("detect"))
        return true;

    const StringEncoding encoding =
        convertCoreFoundationToStringEncoding(convertIANACharSetNameToEncoding(options.encoding));
    settings.setObject(TD_USER_DEFAULTS_NAME_AUTO_DETECT_FILE_ENCODING_FROM_FILE, false);
    settings.setObject(TD_USER_DEFAULTS_NAME_DEFAULT_STRING_ENCODING, static_cast<qint64>(encoding));
    if (TDStringEncoding::defaultEncoding() != nullptr)
        return true;
    problem = "no encoding that can be set as the default: " + options.encoding.toUtf8();
    return false;
}

QList<TDSearchLocation> searchLocations(const DriverOptions &options)
{
    QList<TDSearchLocation> locations;
    for (const FilePath &path : options.locations) {
        const bool isAbsolute = path.bytes().startsWith('/');
        TDSearchLocation location;
        location.setURL(
            (isAbsolute ? path
                        : FilePath::fromDisplayText(QDir::currentPath()).appendingPathComponent(path.bytes()))
                .toUrl());
        location.includeSubFolders = location.isFolder && options.includesSubFolders;
        locations << location;
    }
    return locations;
}

ReplaceControl::Outcome replaceAll(const SearchRun &search, const DriverOptions &options,
                                   const QList<TDSearchLocation> &locations)
{
    ReplaceControl control({[&options] { return options.findText; },
                            [&options] { return *options.replaceText; },
                            [&locations](const FilePath &path) { return isFileAmong(locations, path); }});
    ReplaceControl::Outcome outcome;
    control.replaceMatches(LinesByFile::ofFiles(search.files()),
                           [&outcome](const ReplaceControl::Outcome &ended) { outcome = ended; });
    return outcome;
}

qint64 peakMemoryKiB()
{
    rusage usage = {};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

QJsonObject sharesOf(const QList<LeftOut::Share> &shares)
{
    QJsonObject object;
    for (const LeftOut::Share &share : shares)
        object[QString::fromUtf8(share.name)] = qint64(share.count);
    return object;
}

QJsonObject jsonObject(const LeftOut &leftOut)
{
    static constexpr std::array<const char *, LEFT_OUT_REASONS> NAMES = {
        "",        "kind", "pattern",   "ignoreFile",  "hidden",    "link",
        "special", "size", "ownBackup", "foundBefore", "unreadable"};
    QJsonObject object;
    for (size_t reason = 1; reason < NAMES.size(); ++reason)
        object[QLatin1String(NAMES[reason])] = qint64(leftOut.byReason[reason]);
    object[QStringLiteral("patterns")] = sharesOf(leftOut.byPattern);
    object[QStringLiteral("ignoreFiles")] = sharesOf(leftOut.byIgnoreFile);
    QJsonArray broken;
    for (const LeftOut::BrokenIgnoreFile &file : leftOut.brokenIgnoreFiles)
        broken.append(file.path.displayText());
    object[QStringLiteral("brokenIgnoreFiles")] = broken;
    return object;
}

QJsonObject jsonObject(const SearchTotals &totals)
{
    QJsonObject object;
    object[QStringLiteral("files")] = qint64(totals.files);
    object[QStringLiteral("filesWithMatches")] = qint64(totals.filesWithMatches);
    object[QStringLiteral("matches")] = qint64(totals.matches);
    object[QStringLiteral("matchLines")] = qint64(totals.matchLines);
    object[QStringLiteral("errors")] = qint64(totals.errors);
    object[QStringLiteral("leftOut")] = jsonObject(totals.leftOut);
    object[QStringLiteral("seconds")] = totals.seconds;
    object[QStringLiteral("firstResultSeconds")] =
        totals.firstResultSeconds ? QJsonValue(*totals.firstResultSeconds) : QJsonValue();
    object[QStringLiteral("peakRssKiB")] = peakMemoryKiB();
    return object;
}

/// Reasons with the paths of their files, percent-encoded.
QJsonObject failuresByReason(const ReplaceControl::Outcome &outcome)
{
    QMap<QString, QJsonArray> paths;
    for (const auto &failure : outcome.failures)
        paths[QString::fromLatin1(nameOfProblem(failure.problem))].append(
            QString::fromLatin1(failure.path.bytes().toPercentEncoding(QByteArrayLiteral("/"))));
    QJsonObject reasons;
    for (auto reason = paths.cbegin(); reason != paths.cend(); ++reason)
        reasons[reason.key()] = reason.value();
    return reasons;
}

void report(const DriverOptions &options, const SearchTotals &totals,
            const std::optional<ReplaceControl::Outcome> &replaced)
{
    if (options.printsJson) {
        QJsonObject object = jsonObject(totals);
        if (replaced) {
            object[QStringLiteral("filesRewritten")] = qint64(replaced->filesRewritten);
            object[QStringLiteral("replacements")] = qint64(replaced->replacements);
            object[QStringLiteral("filesFailed")] = qint64(replaced->failures.size());
            object[QStringLiteral("failures")] = failuresByReason(*replaced);
            object[QStringLiteral("journal")] = QString::fromLatin1(nameOfUndoKeeping(replaced->undo));
            object[QStringLiteral("filesUnchanged")] = qint64(replaced->unchangedFiles);
        }
        std::printf("%s\n", QJsonDocument(object).toJson(QJsonDocument::Compact).constData());
    } else if (!options.isQuiet) {
        std::printf("%llu matches found in %llu files, %llu files searched, %llu errors, %.3f s\n",
                    totals.matches, totals.filesWithMatches, totals.files, totals.errors, totals.seconds);
        if (replaced)
            std::printf("%llu replacements, %llu files rewritten, %lld files failed\n",
                        replaced->replacements, replaced->filesRewritten,
                        static_cast<long long>(replaced->failures.size()));
        if (replaced && (replaced->undo == UndoKeeping::TooLarge || replaced->undo == UndoKeeping::Failed))
            std::printf("not kept for undoing: %s\n", nameOfUndoKeeping(replaced->undo));
    }
}

void printError(const TDError &error)
{
    std::fprintf(stderr, "%s\n%s\n", error.localizedDescription().toUtf8().constData(),
                 error.localizedRecoverySuggestion().toUtf8().constData());
}

int workOnJournal(DriverOptions::Journal command)
{
    if (command == DriverOptions::Journal::History) {
        printHistory();
        return SEARCH_ENDED;
    }
    const bool isUndo = command == DriverOptions::Journal::Undo;
    return takeBackLastStep(isUndo ? UndoStepKind::Undo : UndoStepKind::Redo) ? SEARCH_ENDED : NOT_TAKEN_BACK;
}

/// Searches as often as asked for and returns the run of median time, with what the last one found.
std::shared_ptr<SearchRun> searchRepeatedly(DriverOptions &options, const QList<TDSearchLocation> &locations,
                                            SearchTotals &medianTotals)
{
    const DriverOptions lastRun = options;
    if (options.repeat > 1)
        options.listsLines = options.listsErrors = false;
    std::vector<SearchTotals> all;
    std::shared_ptr<SearchRun> run;
    for (int round = 1; round <= lastRun.repeat; ++round) {
        if (round == lastRun.repeat)
            options = lastRun;
        run = std::make_shared<SearchRun>(options);
        run->run(run, locations);
        all.push_back(run->totals());
        if (run->totals().expressionError)
            break;
    }
    std::sort(all.begin(), all.end(),
              [](const auto &left, const auto &right) { return left.seconds < right.seconds; });
    medianTotals = all[all.size() / 2];
    return run;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    installLocalizedTexts(QStringLiteral("en"));
    QByteArray problem;
    std::optional<DriverOptions> options = parseArguments(QList<QByteArray>(argv + 1, argv + argc), problem);
    if (!options || !applySettings(*options, problem))
        return wrongUsage(problem);

    if (!options->interruptedFolder.isEmpty())
        return decideInterruptedRewrites(*options) ? SEARCH_ENDED : NOT_PUT_BACK;
    const RewriteRecordFolder recordFolder(options->recordFolder);
    const UndoJournalFolder journalFolder(options->journalFolder);
    if (options->journal != DriverOptions::Journal::None)
        return workOnJournal(options->journal);
    const QList<TDSearchLocation> locations = searchLocations(*options);
    SearchTotals totals;
    const std::shared_ptr<SearchRun> search = searchRepeatedly(*options, locations, totals);
    if (totals.expressionError) {
        printError(totals.expressionError);
        return MALFORMED_EXPRESSION;
    }
    if (options->isPreview) {
        TDError error;
        if (printPreview(search->files(), *options, error))
            return SEARCH_ENDED;
        printError(error);
        return MALFORMED_EXPRESSION;
    }
    std::optional<ReplaceControl::Outcome> replaced;
    if (options->replaceText)
        replaced = replaceAll(*search, *options, locations);
    report(*options, totals, replaced);
    if (replaced && replaced->error)
        printError(replaced->error);
    return replaced &&
                   replaced->error.hasCode(TD_ERROR_CODE_TD_MATCH_LINE_HIGHLIGHTER_REGULAR_EXPRESSION_ERROR)
               ? MALFORMED_EXPRESSION
               : SEARCH_ENDED;
}
