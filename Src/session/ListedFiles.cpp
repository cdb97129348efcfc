#include "session/ListedFiles.h"

#include "foundation/WorkerThreads.h"
#include "reading/TDStringEncoding.h"
#include "replace/ResolvedPaths.h"
#include "replace/RewriteProblem.h"
#include "search/TDSearchEngine.h"
#include "session/StandingLines.h"
#include "text/LineEnds.h"

#include <QCoreApplication>
#include <QHash>
#include <QSemaphore>

#include <atomic>
#include <map>
#include <memory>
#include <utility>

namespace tidemark {

namespace {

constexpr int LONGEST_WAIT_FOR_EVENTS = 10; ///< milliseconds
constexpr qsizetype MOST_EARLIER = 4;
constexpr qsizetype MOST_EARLIER_LINES = 1 << 20;

using FilesByPath = QHash<FilePath, std::shared_ptr<TDFindResultItem>>;

/// What a search finds, by path; taken when it has ended.
class FoundByPath : public TDSearchEngineDelegate
{
public:
    void didFindMatchInFile(const std::shared_ptr<TDFindResultItem> &file) override
    {
        files.insert(file->path(), file);
    }
    void didFinishSearch(quint64, quint64, quint64) override { isComplete = true; }

    FilesByPath files;
    bool isComplete = false;
};

/// What of a changed file was listed before and reads so now.
struct Standing
{
    std::optional<ListedFiles::Earlier> asBefore; ///< none where the file isn't as it was listed once
    QList<StandingLines::Numbered> replaced;
    std::optional<FileDate> date;
};

using EarlierByPath = QHash<FilePath, QList<ListedFiles::Earlier>>;

using FileNode = std::shared_ptr<TDFindResultItem>;

ListedFiles::Earlier asListedNow(const FileNode &file)
{
    ListedFiles::Earlier now{file, {}};
    now.lineNumbers.reserve(file->children().size());
    for (const auto &node : file->children())
        now.lineNumbers << (node->matchLine() != nullptr ? node->matchLine()->lineNumber() : 0);
    return now;
}

/// `listed` is null for a file that isn't listed now, `found` where nothing was found.
Standing standingOf(const FilePath &path, StringEncoding encoding, const FileNode &listed,
                    const FileNode &found, const QList<ListedFiles::Earlier> &earlier,
                    const std::atomic<bool> &shouldStop)
{
    StandingLines content(path, encoding, shouldStop);
    Standing standing;
    standing.date = content.date();
    for (const auto &before : earlier) {
        if (!content.hold(*before.file, before.lineNumbers, found.get()))
            continue;
        standing.asBefore = before;
        return standing;
    }
    if (listed != nullptr)
        standing.replaced = content.replacedLines(*listed);
    return standing;
}

struct SearchedAgain
{
    QSet<FilePath> searched; ///< of the paths, those that lead to a changed file
    QHash<FilePath, Standing> standing;
    std::shared_ptr<FoundByPath> found = std::make_shared<FoundByPath>();
};

/// Tens of thousands of paths take a while to follow, too, so that isn't done on this thread either.
SearchedAgain searchedAmong(const FilesByPath &files, const QSet<FilePath> &changed, const SearchTerms &terms,
                            const EarlierByPath &earlier,
                            const QHash<FilePath, StringEncoding> &chosenEncodings,
                            const std::function<bool()> &shouldStop)
{
    SearchedAgain again;
    TDSearchEngine engine;
    engine.setChosenEncodings(chosenEncodings);
    engine.setDelegate(again.found);
    engine.setFindOptions(terms.options);
    std::atomic<bool> isStopped = false;
    QSemaphore ended;
    WorkerThreads thread(1);
    thread.start([&] {
        ResolvedPaths resolved;
        QList<TDSearchLocation> locations;
        for (const FilePath &path : files.keys()) {
            if (!changed.contains(resolved.resolving(path)))
                continue;
            again.searched.insert(path);
            locations.emplaceBack().url = path.toUrl();
        }
        engine.startSearch(terms.findText, locations, terms.options.caseRule == CaseRule::Exact);
        for (const FilePath &path : std::as_const(again.searched)) {
            if (isStopped || !again.found->isComplete)
                break;
            const StringEncoding encoding =
                chosenEncodings.value(path, TDStringEncoding::userDefaultsEncoding());
            again.standing.insert(path,
                                  standingOf(path, encoding, files.value(path),
                                             again.found->files.value(path), earlier.value(path), isStopped));
        }
        ended.release();
    });
    while (!ended.tryAcquire(1, LONGEST_WAIT_FOR_EVENTS)) {
        QCoreApplication::processEvents();
        if (!shouldStop())
            continue;
        isStopped = true;
        engine.stopSearch();
    }
    return again;
}

/// What was found, and between it the lines in which something is replaced; of these the file's own ones are
/// taken, since they tell what.
FileNode merged(const FileNode &listed, const FileNode &found, const Standing &standing)
{
    const bool hasFailed = found && found->matches() == nullptr;
    if (standing.replaced.isEmpty() || hasFailed)
        return found;
    std::map<qint64, std::shared_ptr<TDMatchLine>> lines;
    for (const auto &line : found ? found->matches()->lines : MatchLines())
        lines.emplace(line->lineNumber(), line);
    for (const auto &[line, number] : standing.replaced) {
        line->setLineNumber(number);
        line->setHighlightedMatchIndex(TD_NO_HIGHLIGHTED_MATCH);
        const auto behind = lines.lower_bound(number + countLines(line->savedLineString()));
        lines.erase(lines.lower_bound(number), behind);
        lines.emplace(number, line);
    }
    const FileMatches *known = (found ? found : listed)->matches();
    FileMatches matches = known ? *known : FileMatches();
    matches.lines.clear();
    for (const auto &[number, line] : lines)
        matches.lines << line;
    auto file = TDFindResultItem::initWithFile(listed->path(), standing.date, listed->findText(),
                                               listed->includesBOM());
    FindResultItems children = TDFindResultItem::initWithMatchLines(matches.lines, file.get());
    for (const auto &child : found ? found->children() : FindResultItems()) {
        if (child->error())
            children << TDFindResultItem::initWithError(child->error(), file.get());
    }
    file->setMatchLines(children);
    file->setMatches(std::move(matches));
    return file;
}

} // namespace

void ListedFiles::clear()
{
    _gone.clear();
    _chosenEncodings.clear();
    _earlierLines = 0;
    FindResultItems released;
    for (const QList<Earlier> &ofFile : std::exchange(_earlier, {})) {
        for (const Earlier &earlier : ofFile)
            released << earlier.file;
    }
    releaseInBackground(std::move(released));
}

/// As long as it isn't too much altogether.
void ListedFiles::_keepEarlier(const Earlier &earlier)
{
    const TDFindResultItem &file = *earlier.file;
    if (file.matches() == nullptr || _earlierLines + file.children().size() > MOST_EARLIER_LINES)
        return;
    QList<Earlier> &all = _earlier[file.path()];
    all.prepend(earlier);
    _earlierLines += file.children().size();
    if (all.size() > MOST_EARLIER)
        _earlierLines -= all.takeLast().file->children().size();
}

/// It is listed again.
void ListedFiles::_takeEarlier(const Earlier &earlier, std::optional<FileDate> date)
{
    const FileNode &file = earlier.file;
    _earlier[file->path()].removeIf([&file](const Earlier &each) { return each.file == file; });
    _earlierLines -= file->children().size();
    file->setModificationDate(date);
    file->setRemark({});
    qsizetype index = 0;
    for (const auto &line : file->children()) {
        line->matchLine()->setLineNumber(earlier.lineNumbers[index++]);
        line->matchLine()->setHighlightedMatchIndex(TD_NO_HIGHLIGHTED_MATCH);
    }
}

std::optional<FindResultItems> ListedFiles::searchedAgain(FindResultItems files,
                                                          const QSet<FilePath> &changed,
                                                          const SearchTerms &terms,
                                                          const std::function<bool()> &shouldStop)
{
    if (changed.isEmpty() || shouldStop())
        return {};
    FilesByPath listed;
    for (const FilePath &path : std::as_const(_gone))
        listed.insert(path, nullptr);
    for (const auto &file : std::as_const(files))
        listed.insert(file->path(), file);
    for (const auto &file : std::as_const(files)) {
        if (file->encoding().source == EncodingSource::Chosen)
            _chosenEncodings.insert(file->path(), file->encoding().encoding);
    }
    const SearchedAgain again = searchedAmong(listed, changed, terms, _earlier, _chosenEncodings, shouldStop);
    if (again.searched.isEmpty())
        return {};
    FindResultItems now;
    QList<FilePath> gone;
    const auto list = [&](const FilePath &path, const FileNode &before) {
        const Standing standing = again.standing.value(path);
        const auto listedNow = before ? std::optional(asListedNow(before)) : std::nullopt;
        FileNode file;
        if (standing.asBefore) {
            file = standing.asBefore->file;
            _takeEarlier(*standing.asBefore, standing.date);
        } else {
            file = merged(before, again.found->files.value(path), standing);
        }
        if (!file && before && !again.found->isComplete) {
            before->setRemark(textOfProblem(RewriteProblem::Changed));
            file = before;
        }
        if (file)
            now << file;
        else
            gone << path;
        if (listedNow && file != before)
            _keepEarlier(*listedNow);
    };
    for (auto &file : files) {
        if (again.searched.contains(file->path()))
            list(file->path(), file);
        else
            now << std::move(file);
    }
    for (const FilePath &path : std::as_const(_gone))
        list(path, nullptr);
    _gone = gone;
    return now;
}

} // namespace tidemark
