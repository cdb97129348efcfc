#pragma once

#include "session/FindResults.h"

#include <QAbstractItemModel>
#include <QHash>

#include <functional>
#include <optional>

namespace tidemark {

/// The results as a tree of four columns for views: files, and below each its match lines or its error.
/// Sorting orders the files as shown and leaves the list as it is. A file's remark stands in its row instead
/// of its folder.
class ResultsTreeModel : public QAbstractItemModel
{
    Q_OBJECT

public:
    enum Column { NameColumn, MatchesColumn, FolderColumn, EncodingColumn };
    static constexpr int COLUMN_COUNT = 4;
    /// Of a file's name: what stands behind it in a secondary colour; empty for nothing.
    static constexpr int NoteRole = Qt::UserRole + 1;

    explicit ResultsTreeModel(FindResults &results, QObject *parent = nullptr);

    QModelIndex index(int row, int column, const QModelIndex &parent = {}) const override;
    QModelIndex parent(const QModelIndex &child) const override;
    QModelIndex sibling(int row, int column, const QModelIndex &index) const override;
    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    bool hasChildren(const QModelIndex &parent = {}) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    /// A column of -1 gives the order of arrival. Files that arrive later are sorted in.
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;

    const FindResults &results() const { return _results; }
    /// Null for an invalid index.
    std::shared_ptr<TDFindResultItem> item(const QModelIndex &index) const;
    /// The file as shown in the row.
    const std::shared_ptr<TDFindResultItem> &file(int row) const { return _results.files()[_position(row)]; }
    /// Invalid for null. The node must be in the results.
    QModelIndex indexOf(const TDFindResultItem *item) const;

    /// To be called after the node changed in a way that shows; its file's count is taken anew.
    void noteChanged(const TDFindResultItem &item);
    /// The same when only the line's own looks changed.
    void noteLooksChanged(const TDFindResultItem &item);
    /// noteChanged() for a file and everything below it.
    void noteFileChanged(const TDFindResultItem &file);
    /// noteChanged() for everything that is in the results. With `nowAndThen`, files of very many lines are
    /// counted in this call, not when they are drawn, and it is called in between; it may deliver events, and
    /// take the model away.
    void noteAllChanged(const std::function<void()> &nowAndThen = {});

private:
    void _connectResults();
    void _sortShownOrder();
    void _changeShownOrder();
    bool _isShownBefore(const TDFindResultItem &left, const TDFindResultItem &right) const;
    void _beginRemove(const TDFindResultItem *parent, qsizetype first, qsizetype count);
    void _endRemove();
    void _beginReset();
    void _endReset();
    qsizetype _position(int row) const { return _shownOrder.isEmpty() ? row : _shownOrder[row]; }
    int _row(qsizetype position) const { return int(_rows.isEmpty() ? position : _rows[position]); }
    struct Counts
    {
        void add(const TDMatchLine &line);
        /// Those from `lines` on.
        void add(const MatchLines &found, qsizetype end);

        quint64 matches = 0;
        quint64 replaced = 0;
        // What they were counted from: lines found, and lines that show.
        qsizetype lines = 0;
        qsizetype shown = 0;
        bool isOfRows = false; ///< of the lines that are listed, not of all that were found
    };
    /// Whether lines of the file were removed, or are filtered out.
    bool _lacksLines(const TDFindResultItem &file) const;
    const Counts &_counts(const TDFindResultItem &file) const;
    /// None for errors.
    std::optional<qint32> _matchCount(const TDFindResultItem &file) const;
    QString _noteOf(const TDFindResultItem &file) const;
    QString _displayText(const TDFindResultItem &item, int column) const;
    static QIcon _iconOf(const TDFindResultItem &file);
    static QString _tipOf(const TDFindResultItem &file);
    QString _spokenFile(const TDFindResultItem &file) const;
    static QString _spokenLine(const TDFindResultItem &leaf);
    QVariant _fileData(const TDFindResultItem &file, int column, int role) const;

    FindResults &_results;
    int _sortColumn = -1;
    Qt::SortOrder _sortOrder = Qt::AscendingOrder;
    QList<qsizetype> _shownOrder; ///< row to position in the results; empty: the same
    QList<qsizetype> _rows;       ///< the other way round
    mutable QHash<NodeIdentity, Counts> _knownCounts;
    bool _isResetting = false;
};

} // namespace tidemark
