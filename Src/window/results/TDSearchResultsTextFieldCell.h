#pragma once

#include "text/StyledText.h"
#include "window/results/MatchLineDisplay.h"
#include "window/results/StyledLinePainter.h"

#include <QCache>
#include <QStyledItemDelegate>
#include <QTextLayout>

#include <memory>

namespace tidemark {

class ReplacementPreview;
class TDFindResultItem;

/// Lays out and draws the results' rows: match lines wrapped by character over the whole width, errors, and
/// the cells of a file's row. Only what is drawn or measured is laid out, and only the rows used last are
/// kept.
class TDSearchResultsTextFieldCell : public QStyledItemDelegate
{
    Q_OBJECT

public:
    explicit TDSearchResultsTextFieldCell(QObject *parent = nullptr);

    /// A leaf takes the option's whole rectangle.
    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    /// The height at the width of the option's rectangle, and at least MINIMUM_ROW_HEIGHT.
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

    /// Where a part of a leaf's display text stands in a row with the option's width and font; its first line
    /// only.
    QRect rectOfText(const QStyleOptionViewItem &option, const TDFindResultItem &item, TextRange range) const;
    /// The same of a match. The start of the line for one that there isn't.
    QRect rectOfMatch(const QStyleOptionViewItem &option, const TDFindResultItem &item, qint64 match) const;
    /// Shown behind each match from now on; null: none is. Asked when something is laid out.
    void setPreview(std::shared_ptr<const ReplacementPreview> preview);
    /// Drops what is laid out of the item, or of everything.
    void forget(const TDFindResultItem &item) { _layouts.remove(&item); }
    void forgetAll() { _layouts.clear(); }

    /// The font of a styled text: in proportion to the view's own, and of its family where the platform lacks
    /// the one that is asked for.
    static QFont fontOf(const StyledFont &font, const QFont &viewFont);

    static constexpr int MINIMUM_ROW_HEIGHT = 15;

private:
    struct Layout
    {
        StyledText styled;
        QList<TextRange> matches;
        QTextLayout text;
        Directions directions = Directions::LeftToRight;
        int width = 0;
        QFont font;
        int height = 0;
        qsizetype parting = -1; ///< where a character was put between number and line
    };

    const Layout &_layout(const QStyleOptionViewItem &option, const TDFindResultItem &item) const;
    void _paintMatchLine(QPainter &painter, const QStyleOptionViewItem &option,
                         const TDFindResultItem &item) const;
    void _paintError(QPainter &painter, const QStyleOptionViewItem &option,
                     const TDFindResultItem &item) const;

    MatchLineLook _lookOf(const TDFindResultItem &item) const;

    std::shared_ptr<const ReplacementPreview> _preview;
    mutable QCache<const TDFindResultItem *, Layout> _layouts;
};

} // namespace tidemark
