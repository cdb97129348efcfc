#pragma once

#include "matching/TDFindResultItem.h"

#include <QObject>

namespace tidemark {

/// Each of the files, followed by its lines.
FindResultItems filesAndLines(const FindResultItems &files);

/// Gives up nodes without waiting until they are gone: millions of them take a second or more.
void releaseInBackground(FindResultItems nodes);

/// The program is about to end: what isn't released by now is left to the system, which takes everything back
/// at once.
void stopReleasing();

/// The file nodes of one window's results, in arrival order, as an observable list. Main thread only. Each
/// node's position() is its index in this list; children keep theirs in their file.
class FindResults : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;
    ~FindResults() override;

    const FindResultItems &files() const { return _files; }
    bool isEmpty() const { return _files.isEmpty(); }
    qsizetype count() const { return _files.size(); }

    void clear();
    void append(const FindResultItems &files);
    /// Removes the nodes: whole files, and match lines from the files that stay. Nodes that aren't in the
    /// list are passed over. Linear in the size of the list, however many are removed: scattered nodes are
    /// removed in one go.
    void remove(const FindResultItems &nodes);

Q_SIGNALS:
    void aboutToClear();
    void cleared();
    void aboutToAppend(qsizetype first, qsizetype count);
    void appended(qsizetype first, qsizetype count);
    /// For each run of neighbouring siblings; `parent` is null for files. Sent from the end of the list
    /// forward.
    void aboutToRemove(TDFindResultItem *parent, qsizetype first, qsizetype count);
    void removed(TDFindResultItem *parent, qsizetype first, qsizetype count);
    /// Instead of very many removals.
    void aboutToThinOut();
    void thinnedOut();

private:
    struct Removal
    {
        TDFindResultItem *parent; ///< null for files
        qsizetype first;
        qsizetype count;
    };
    QList<Removal> _removals(const FindResultItems &nodes) const;
    void _removeRuns(const QList<Removal> &removals);
    void _thinOut(const QList<Removal> &removals);
    FindResultItems _siblings(const TDFindResultItem *parent) const;
    void _setSiblings(TDFindResultItem *parent, FindResultItems siblings);

    FindResultItems _files;
};

} // namespace tidemark
