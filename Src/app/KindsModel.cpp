#include "app/KindsModel.h"

#include "app/KindFilter.h"
#include "foundation/LocalizedText.h"
#include "window/PlainToolTip.h"

#include <QApplication>
#include <QIcon>
#include <QStyle>

namespace tidemark {

namespace {

QVariant titleData(const Kind &kind, int role)
{
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return kind.title;
    case Qt::CheckStateRole:
        return kind.include ? Qt::Checked : Qt::Unchecked;
    default:
        return {};
    }
}

QVariant filterData(const Kind &kind, int role)
{
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return kind.uti;
    case Qt::DecorationRole:
        return kindFilterRemark(kind.uti).isEmpty()
                   ? QVariant()
                   : QApplication::style()->standardIcon(QStyle::SP_MessageBoxWarning);
    case Qt::ToolTipRole:
        return plainToolTip(kindFilterRemark(kind.uti));
    case Qt::AccessibleDescriptionRole:
        return kindFilterRemark(kind.uti);
    default:
        return {};
    }
}

bool setTitleData(Kind &kind, const QVariant &value, int role)
{
    if (role == Qt::EditRole)
        kind.title = value.toString();
    else if (role == Qt::CheckStateRole)
        kind.include = value.toInt() == Qt::Checked;
    else
        return false;
    return true;
}

} // namespace

KindsModel::KindsModel(QObject *parent) : QAbstractTableModel(parent) {}

void KindsModel::setKinds(const QList<Kind> &kinds)
{
    if (kinds == _kinds)
        return;
    beginResetModel();
    _kinds = kinds;
    endResetModel();
}

int KindsModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(_kinds.size());
}

int KindsModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant KindsModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const Kind &kind = _kinds[index.row()];
    return index.column() == TitleColumn ? titleData(kind, role) : filterData(kind, role);
}

bool KindsModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return false;
    Kind kind = _kinds[index.row()];
    if (index.column() == TitleColumn) {
        if (!setTitleData(kind, value, role))
            return false;
    } else if (role == Qt::EditRole) {
        kind.uti = value.toString();
    } else {
        return false;
    }
    if (kind == _kinds[index.row()])
        return true;
    _kinds[index.row()] = kind;
    Q_EMIT dataChanged(index, index);
    Q_EMIT edited(_kinds);
    return true;
}

Qt::ItemFlags KindsModel::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return {};
    const Qt::ItemFlags flags =
        QAbstractTableModel::flags(index) | Qt::ItemIsEditable | Qt::ItemNeverHasChildren;
    return index.column() == TitleColumn ? flags | Qt::ItemIsUserCheckable : flags;
}

QVariant KindsModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    return section == TitleColumn ? localizedString("Kind") : localizedString("Filter");
}

void KindsModel::insertKind(int row, const Kind &kind)
{
    beginInsertRows({}, row, row);
    _kinds.insert(row, kind);
    endInsertRows();
    Q_EMIT edited(_kinds);
}

void KindsModel::removeKind(int row)
{
    if (row < 0 || row >= _kinds.size())
        return;
    beginRemoveRows({}, row, row);
    _kinds.removeAt(row);
    endRemoveRows();
    Q_EMIT edited(_kinds);
}

bool KindsModel::moveKind(int row, int newRow)
{
    const bool isPossible = row >= 0 && row < _kinds.size() && newRow >= 0 && newRow < _kinds.size();
    // Where the row goes is counted with the row still in its old place.
    if (!isPossible || !beginMoveRows({}, row, row, {}, newRow > row ? newRow + 1 : newRow))
        return false;
    _kinds.move(row, newRow);
    endMoveRows();
    Q_EMIT edited(_kinds);
    return true;
}

void KindsModel::replaceAll(const QList<Kind> &kinds)
{
    setKinds(kinds);
    Q_EMIT edited(_kinds);
}

} // namespace tidemark
