#pragma once

#include "foundation/FilePath.h"

#include <QStyledItemDelegate>

namespace tidemark {

/// Draws the path that is bound to a row as its folders in order, "home › anna › notes.txt", with the item's
/// icon; where there is too little room the middle is left out. An item that no longer exists is greyed and
/// says so. The binding goes one way: a location's path is never edited in its row, so nothing is written
/// back to the model.
class PathControlWithPathBinding : public QStyledItemDelegate
{
    Q_OBJECT

public:
    /// `pathRole` and `existsRole` are the model's.
    PathControlWithPathBinding(int pathRole, int existsRole, QObject *parent = nullptr);

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;

    /// The path as shown, in at most `width` pixels; the last component stays as long as anything does.
    static QString breadcrumb(const FilePath &path, const QFontMetrics &metrics, int width);

private:
    const int _pathRole;
    const int _existsRole;
};

} // namespace tidemark
