#pragma once

#include "matching/TDFindResultItem.h"

#include <QHash>
#include <QObject>

#include <memory>

namespace tidemark {

class ResultsFilter;

/// Each of the files, followed by its lines.
FindResultItems filesAndLines(const FindResultItems &files);

/// Gives up nodes without waiting until they are gone: millions of them take a second or more.
void releaseInBackground(FindResultItems nodes);

/// The program is about to end: what isn't released by now is left to the system, which takes everything back
/// at once.
void stopReleasing();

/// The file nodes of one window's results, in arrival order, as an observable list. Main thread only. Each
/// node's position() is its index in this list; children keep theirs in their file. While a filter is set,
/// the list and the files' children are those that show; the others are kept aside until they show again, and
/// neither removed nor changed.
class FindResults : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;
    ~FindResults() override;

    const FindResultItems &files() const { return _files; }
    bool isEmpty() const { return _files.isEmpty(); }
    qsizetype count() const { return _files.size(); }
    /// With those that a filter hides.
    qsizetype countOfAll() const { return _filter ? _all.size() : _files.size(); }
    /// Whether no file has arrived behind it, hidden ones counted.
    bool isLast(const TDFindResultItem &file) const;
    /// Whether the node is in the list, or below a file in it.
    bool shows(const TDFindResultItem &node) const;
    /// Whether some lines of the file are hidden, and others aren't.
    bool isPartlyHidden(const TDFindResultItem &file) const { return _allLines.contains(&file); }

    /// Null: everything shows.
    void setFilter(std::shared_ptr<const ResultsFilter> filter);
    const std::shared_ptr<const ResultsFilter> &filter() const { return _filter; }

    void clear();
    void append(const FindResultItems &files);
    /// Nothing happens when its file isn't in the list any more. A file of which nothing is left goes. Of
    /// further lines those that a filter hides are kept aside.
    void add(FoundPart part);
    /// Removes the nodes: whole files, and match lines from the files that stay. Nodes that aren't in the
    /// list are passed over. Linear in the size of the list, however many are removed: scattered nodes are
    /// removed in one go.
    void remove(const FindResultItems &nodes);
    /// By file, what takes its place; null: it goes. While no filter is set.
    using Replacements = QHash<const TDFindResultItem *, std::shared_ptr<TDFindResultItem>>;
    void replaceFiles(const Replacements &replacements);

Q_SIGNALS:
    void aboutToClear();
    void cleared();
    void aboutToAppend(qsizetype first, qsizetype count);
    void appended(qsizetype first, qsizetype count);
    /// Further lines of a file, behind those that it has.
    void aboutToGrow(TDFindResultItem *file, qsizetype first, qsizetype count);
    void grown(TDFindResultItem *file);
    /// For each run of neighbouring siblings; `parent` is null for files. Sent from the end of the list
    /// forward.
    void aboutToRemove(TDFindResultItem *parent, qsizetype first, qsizetype count);
    void removed(TDFindResultItem *parent, qsizetype first, qsizetype count);
    /// Instead of very many removals, and when other files stand in the place of some.
    void aboutToThinOut();
    void thinnedOut();
    /// Others show than before; every file may stand elsewhere.
    void aboutToFilter();
    void filtered();
    /// After any of these, when count() and countOfAll() hold.
    void counted();

private:
    struct Removal
    {
        TDFindResultItem *parent; ///< null for files
        qsizetype first;
        qsizetype count;
    };
    QList<Removal> _removals(const FindResultItems &nodes) const;
    void _grow(FoundPart part);
    void _growWhileFiltered(const FoundPart &part);
    FindResultItems _filtered(const FindResultItems &files);
    FindResultItems _linesOf(const std::shared_ptr<TDFindResultItem> &file) const;
    class HiddenLines;
    void _removeRuns(const QList<Removal> &removals);
    void _thinOut(const QList<Removal> &removals);
    FindResultItems _siblings(const TDFindResultItem *parent) const;
    void _setSiblings(TDFindResultItem *parent, FindResultItems siblings);

    FindResultItems _files;
    std::shared_ptr<const ResultsFilter> _filter;
    FindResultItems _all;                                       ///< while there is a filter
    QHash<const TDFindResultItem *, FindResultItems> _allLines; ///< of the files that show in part
};

} // namespace tidemark
