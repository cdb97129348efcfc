#pragma once

#include "search/TDSearchEngine.h"
#include "session/SearchTerms.h"

#include <QHash>
#include <QObject>

#include <functional>
#include <memory>
#include <mutex>
#include <optional>

namespace tidemark {

/// Listed files that are searched once more, each by itself, on another thread, in an encoding that a person
/// chose for them. Made and asked on the main thread.
class SearchAgain : public TDSearchEngineDelegate, public std::enable_shared_from_this<SearchAgain>
{
public:
    /// `ended` is called on the main thread, unless taken() was called before; `context` lives there until
    /// then.
    SearchAgain(QObject *context, FindResultItems files, StringEncoding encoding,
                std::function<void()> ended);

    const FindResultItems &files() const { return _files; }
    StringEncoding encoding() const { return _encoding; }
    /// Searches them and returns when that has ended or was stopped. Any thread.
    void search(TDSearchEngine &engine, const SearchTerms &terms);

    /// By path, what each file has come to that was searched to its end: null where nothing was found. What
    /// comes later isn't taken up any more.
    QHash<FilePath, std::shared_ptr<TDFindResultItem>> taken();

    // On the thread that searches.
    void didFindFile(const FilePath &path, quint64 scannedCount, quint64 fileMatchCount,
                     quint64 matchCount) override;
    void didFindMatchInFile(const std::shared_ptr<TDFindResultItem> &file) override;
    void didFinishSearch(quint64 scannedCount, quint64 fileMatchCount, quint64 matchCount) override;
    void didStopSearch(quint64 scannedCount, quint64 fileMatchCount, quint64 matchCount) override;

private:
    /// The mutex must be held.
    void _finishFile();
    void _end();

    const FindResultItems _files;
    const StringEncoding _encoding;
    const std::function<void()> _ended;
    std::mutex _mutex;
    QObject *_context; ///< null once everything was taken
    QHash<FilePath, std::shared_ptr<TDFindResultItem>> _done;
    /// The file in hand, to which more may come.
    std::optional<FilePath> _path;
    std::shared_ptr<TDFindResultItem> _found;
};

} // namespace tidemark
