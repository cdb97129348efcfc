#include "window/locations/TDTableViewDragDropArrayController.h"

#include "foundation/LocalizedText.h"
#include "session/MyDocument.h"
#include "window/PlainToolTip.h"
#include "window/locations/SearchLocationsController.h"

#include <QCoreApplication>
#include <QDataStream>
#include <QFileIconProvider>
#include <QIODevice>
#include <QScopedValueRollback>

#include <algorithm>
#include <sys/stat.h>

namespace tidemark {

namespace {

bool exists(const TDSearchLocation &location)
{
    struct stat status = {};
    return stat(location.path().cString(), &status) == 0;
}

/// Rows with the process and the model they were dragged from, so that another window's rows aren't taken for
/// one's own.
struct DraggedRows
{
    qint64 process = 0;
    quint64 source = 0;
    QList<int> rows;
};

DraggedRows draggedRows(const QMimeData &data)
{
    DraggedRows dragged;
    QDataStream stream(data.data(TD_DRAGGED_TYPE_TABLE_VIEW_ITEM));
    stream >> dragged.process >> dragged.source;
    // Others could say that as many rows follow as no memory holds.
    if (dragged.process == QCoreApplication::applicationPid())
        stream >> dragged.rows;
    return dragged;
}

QList<FilePath> droppedPaths(const QMimeData &data)
{
    QList<FilePath> paths;
    const QList<QUrl> urls = data.urls();
    for (const QUrl &url : urls) {
        if (url.isLocalFile())
            paths << FilePath::fromUrl(url);
    }
    return paths;
}

} // namespace

TDTableViewDragDropArrayController::TDTableViewDragDropArrayController(MyDocument &document, QObject *parent)
    : QAbstractTableModel(parent), _document(document)
{
    connect(&document, &MyDocument::searchLocationsChanged, this,
            &TDTableViewDragDropArrayController::_documentChanged);
    _documentChanged();
}

void TDTableViewDragDropArrayController::_documentChanged()
{
    if (_changesDocument)
        return;
    beginResetModel();
    _exists.clear();
    for (const TDSearchLocation &location : _document.searchLocations())
        _exists << exists(location);
    endResetModel();
}

void TDTableViewDragDropArrayController::refreshExistence()
{
    for (int row = 0; row < _exists.size(); ++row) {
        const bool stillExists = exists(_document.searchLocations()[row]);
        if (_exists[row] == stillExists)
            continue;
        _exists[row] = stillExists;
        Q_EMIT dataChanged(index(row, PathColumn), index(row, SubfoldersColumn));
    }
}

int TDTableViewDragDropArrayController::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(_exists.size());
}

int TDTableViewDragDropArrayController::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : 2;
}

QVariant TDTableViewDragDropArrayController::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const TDSearchLocation &location = _document.searchLocations()[index.row()];
    if (role == PathRole)
        return QVariant::fromValue(location.path());
    if (role == ExistsRole)
        return _exists[index.row()];
    if (role == IsFolderRole)
        return location.isFolder;
    return index.column() == PathColumn ? _pathData(location, _exists[index.row()], role)
                                        : _subfoldersData(location, role);
}

QVariant TDTableViewDragDropArrayController::_pathData(const TDSearchLocation &location, bool exists,
                                                       int role) const
{
    static const QFileIconProvider icons;
    const QString path = location.path().displayText();
    const auto remark = [&path, exists] {
        return exists ? path : formatted(localizedString("%@ no longer exists"), {path});
    };
    switch (role) {
    case Qt::DisplayRole:
        return path;
    case Qt::ToolTipRole:
        return plainToolTip(remark());
    case Qt::AccessibleTextRole:
        return remark();
    case Qt::DecorationRole:
        return icons.icon(location.isFolder ? QFileIconProvider::Folder : QFileIconProvider::File);
    default:
        return {};
    }
}

QVariant TDTableViewDragDropArrayController::_subfoldersData(const TDSearchLocation &location, int role) const
{
    if (!location.isFolder)
        return {};
    switch (role) {
    case Qt::CheckStateRole:
        return location.includeSubFolders ? Qt::Checked : Qt::Unchecked;
    case Qt::DisplayRole:
        return localizedString("Subfolders");
    case Qt::ToolTipRole:
        return localizedString("Tick to search the folders inside this folder, too");
    default:
        return {};
    }
}

bool TDTableViewDragDropArrayController::setData(const QModelIndex &index, const QVariant &value, int role)
{
    const bool isTick = role == Qt::CheckStateRole && index.column() == SubfoldersColumn;
    if (!isTick || _isReadOnly || !checkIndex(index, CheckIndexOption::IndexIsValid) ||
        !index.data(IsFolderRole).toBool())
        return false;
    QList<TDSearchLocation> locations = _document.searchLocations();
    locations[index.row()].includeSubFolders = value.toInt() == Qt::Checked;
    {
        const QScopedValueRollback rollback(_changesDocument, true);
        _document.setSearchLocations(locations);
    }
    Q_EMIT dataChanged(index, index, {Qt::CheckStateRole});
    return true;
}

QVariant TDTableViewDragDropArrayController::headerData(int section, Qt::Orientation orientation,
                                                        int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    return section == PathColumn ? localizedString("Location") : localizedString("Subfolders");
}

Qt::ItemFlags TDTableViewDragDropArrayController::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return Qt::ItemIsDropEnabled;
    Qt::ItemFlags flags =
        Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsDragEnabled | Qt::ItemNeverHasChildren;
    if (index.column() == SubfoldersColumn && index.data(IsFolderRole).toBool())
        flags |= Qt::ItemIsUserCheckable;
    return flags;
}

QHash<int, QByteArray> TDTableViewDragDropArrayController::roleNames() const
{
    QHash<int, QByteArray> names = QAbstractTableModel::roleNames();
    names[PathRole] = kmPathControlWithPathBindingPathBinding.toLatin1();
    return names;
}

bool TDTableViewDragDropArrayController::removeRows(int row, int count, const QModelIndex &parent)
{
    if (parent.isValid() || _isReadOnly || row < 0 || count < 1 || row + count > rowCount())
        return false;
    QList<TDSearchLocation> locations = _document.searchLocations();
    beginRemoveRows({}, row, row + count - 1);
    locations.remove(row, count);
    _exists.remove(row, count);
    const QScopedValueRollback rollback(_changesDocument, true);
    _document.setSearchLocations(locations);
    endRemoveRows();
    return true;
}

void TDTableViewDragDropArrayController::removeRowsAt(const QList<int> &rows)
{
    QList<int> descending = rows;
    std::sort(descending.begin(), descending.end(), std::greater());
    for (const int row : descending)
        removeRows(row, 1);
}

QStringList TDTableViewDragDropArrayController::mimeTypes() const
{
    return {TD_DRAGGED_TYPE_TABLE_VIEW_ITEM, QStringLiteral("text/uri-list")};
}

QMimeData *TDTableViewDragDropArrayController::mimeData(const QModelIndexList &indexes) const
{
    QList<int> rows;
    for (const QModelIndex &index : indexes) {
        if (!rows.contains(index.row()))
            rows << index.row();
    }
    return writeRows(rows);
}

QMimeData *TDTableViewDragDropArrayController::writeRows(const QList<int> &rows) const
{
    QList<int> ascending = rows;
    std::sort(ascending.begin(), ascending.end());
    QByteArray archive;
    QDataStream stream(&archive, QIODevice::WriteOnly);
    stream << qint64(QCoreApplication::applicationPid()) << quint64(quintptr(this)) << ascending;
    auto *data = new QMimeData;
    data->setData(TD_DRAGGED_TYPE_TABLE_VIEW_ITEM, archive);
    return data;
}

ProposedDrop TDTableViewDragDropArrayController::validateDrop(const QMimeData &data, DragSource source,
                                                              int proposedRow,
                                                              DropOperation proposedOperation) const
{
    ProposedDrop drop = {proposedRow, proposedOperation, DragOperation::None};
    if (source == DragSource::SameTable && data.hasFormat(TD_DRAGGED_TYPE_TABLE_VIEW_ITEM)) {
        drop.dropOperation = DropOperation::Above;
        drop.operation = DragOperation::Move;
    } else if (data.hasUrls()) {
        drop.dropOperation = DropOperation::Above;
        const QList<FilePath> paths = droppedPaths(data);
        if (!std::all_of(paths.begin(), paths.end(), isAliasOrSymbolicLink))
            drop.operation = DragOperation::Copy;
    }
    return drop;
}

bool TDTableViewDragDropArrayController::acceptDrop(const QMimeData &data, DragSource source, int row)
{
    if (source == DragSource::SameTable && data.hasFormat(TD_DRAGGED_TYPE_TABLE_VIEW_ITEM)) {
        _moveRows(draggedRows(data).rows, row);
        return true;
    }
    return data.hasUrls() && _tryNotifyDropFiles(droppedPaths(data));
}

void TDTableViewDragDropArrayController::_moveRows(QList<int> rows, int row)
{
    if (_isReadOnly)
        return;
    rows.removeIf([this](int dragged) { return dragged < 0 || dragged >= rowCount(); });
    QList<TDSearchLocation> locations = _document.searchLocations();
    QList<TDSearchLocation> moved;
    for (const int dragged : rows)
        moved << locations[dragged];
    int target = row;
    for (auto dragged = rows.crbegin(); dragged != rows.crend(); ++dragged) {
        locations.removeAt(*dragged);
        if (*dragged < row)
            --target;
    }
    for (const TDSearchLocation &location : moved)
        locations.insert(target++, location);
    _document.setSearchLocations(locations);
}

bool TDTableViewDragDropArrayController::_tryNotifyDropFiles(const QList<FilePath> &paths)
{
    try {
        if (_dropFilesReceiver)
            _dropFilesReceiver(paths);
    } catch (const std::exception &) {
        // The list stays as far as it got.
    }
    return true;
}

void TDTableViewDragDropArrayController::setDropFilesReceiver(
    std::function<void(const QList<FilePath> &)> receiver)
{
    _dropFilesReceiver = std::move(receiver);
}

DragSource TDTableViewDragDropArrayController::_sourceOf(const QMimeData &data) const
{
    const DraggedRows dragged = draggedRows(data);
    const bool isOwn =
        dragged.process == QCoreApplication::applicationPid() && dragged.source == quint64(quintptr(this));
    return isOwn ? DragSource::SameTable : DragSource::Elsewhere;
}

bool TDTableViewDragDropArrayController::canDropMimeData(const QMimeData *data, Qt::DropAction, int row, int,
                                                         const QModelIndex &parent) const
{
    const DropOperation operation = parent.isValid() ? DropOperation::On : DropOperation::Above;
    const int proposedRow = parent.isValid() ? parent.row() : (row < 0 ? rowCount() : row);
    return !_isReadOnly &&
           validateDrop(*data, _sourceOf(*data), proposedRow, operation).operation != DragOperation::None;
}

bool TDTableViewDragDropArrayController::dropMimeData(const QMimeData *data, Qt::DropAction action, int row,
                                                      int column, const QModelIndex &parent)
{
    if (!canDropMimeData(data, action, row, column, parent))
        return false;
    const int targetRow = parent.isValid() ? parent.row() : (row < 0 ? rowCount() : row);
    return acceptDrop(*data, _sourceOf(*data), targetRow);
}

} // namespace tidemark
