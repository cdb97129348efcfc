#pragma once

#include "search/Kind.h"

#include <QAbstractTableModel>

namespace tidemark {

/// A list of kinds as an editable table: the title with the tick, and the filter.
class KindsModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { TitleColumn, FilterColumn, ColumnCount };

    explicit KindsModel(QObject *parent = nullptr);

    const QList<Kind> &kinds() const { return _kinds; }
    /// Not an edit: nothing is emitted but the model's own signals, and those only for another list.
    void setKinds(const QList<Kind> &kinds);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    void insertKind(int row, const Kind &kind);
    void removeKind(int row);
    /// False where there is no such place.
    bool moveKind(int row, int newRow);
    void replaceAll(const QList<Kind> &kinds);

Q_SIGNALS:
    /// After each change that a person made.
    void edited(const QList<Kind> &kinds);

private:
    QList<Kind> _kinds;
};

} // namespace tidemark
