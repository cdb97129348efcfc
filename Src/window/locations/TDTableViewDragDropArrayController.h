#pragma once

#include "foundation/FilePath.h"

#include <QAbstractTableModel>
#include <QMimeData>

#include <functional>

namespace tidemark {

class MyDocument;
struct TDSearchLocation;

/// The type of rows dragged inside the list.
inline const QString TD_DRAGGED_TYPE_TABLE_VIEW_ITEM = QStringLiteral("com.velkor.Tidemark.drag.type");
/// The name under which a row's path can be bound.
inline const QString kmPathControlWithPathBindingPathBinding = QStringLiteral("path");

enum class DropOperation { On = 0, Above = 1 };
enum class DragOperation { None = 0, Copy = 1, Move = 16 };
enum class DragSource { SameTable, Elsewhere };

/// Where a drop would go, and what it would do.
struct ProposedDrop
{
    int row = 0;
    DropOperation dropOperation = DropOperation::Above;
    DragOperation operation = DragOperation::None;
};

/// A document's search locations as a list of two columns, with the rules for dragging its rows and for
/// dropping files onto it. Every change of the list goes to the document.
class TDTableViewDragDropArrayController : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { PathColumn, SubfoldersColumn };
    enum Role { PathRole = Qt::UserRole, ExistsRole, IsFolderRole };

    /// The document must outlive the object.
    explicit TDTableViewDragDropArrayController(MyDocument &document, QObject *parent = nullptr);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    bool removeRows(int row, int count, const QModelIndex &parent = {}) override;
    QHash<int, QByteArray> roleNames() const override;
    QStringList mimeTypes() const override;
    QMimeData *mimeData(const QModelIndexList &indexes) const override;
    Qt::DropActions supportedDropActions() const override { return Qt::CopyAction | Qt::MoveAction; }
    Qt::DropActions supportedDragActions() const override { return Qt::MoveAction; }
    bool canDropMimeData(const QMimeData *data, Qt::DropAction action, int row, int column,
                         const QModelIndex &parent) const override;
    bool dropMimeData(const QMimeData *data, Qt::DropAction action, int row, int column,
                      const QModelIndex &parent) override;

    /// The pasteboard's content for the rows.
    QMimeData *writeRows(const QList<int> &rows) const;
    ProposedDrop validateDrop(const QMimeData &data, DragSource source, int proposedRow,
                              DropOperation proposedOperation) const;
    /// Row moves go to `row` as it was before the move; false when the data is neither rows nor files.
    bool acceptDrop(const QMimeData &data, DragSource source, int row);

    void removeRowsAt(const QList<int> &rows);
    /// Called with all the paths of a drop of files. What it throws is swallowed.
    void setDropFilesReceiver(std::function<void(const QList<FilePath> &)> receiver);
    /// The rows can't be changed while something depends on them.
    void setReadOnly(bool readOnly) { _isReadOnly = readOnly; }
    bool isReadOnly() const { return _isReadOnly; }
    /// Looks again which of the items exist.
    void refreshExistence();

private:
    void _documentChanged();
    QVariant _pathData(const TDSearchLocation &location, bool exists, int role) const;
    QVariant _subfoldersData(const TDSearchLocation &location, int role) const;
    void _moveRows(QList<int> rows, int row);
    bool _tryNotifyDropFiles(const QList<FilePath> &paths);
    DragSource _sourceOf(const QMimeData &data) const;

    MyDocument &_document;
    QList<bool> _exists;
    std::function<void(const QList<FilePath> &)> _dropFilesReceiver;
    bool _isReadOnly = false;
    bool _changesDocument = false;
};

} // namespace tidemark
