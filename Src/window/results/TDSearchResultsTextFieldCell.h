#pragma once

#include "matching/TDFindResultItem.h"
#include "text/StyledText.h"
#include "window/results/MatchLineDisplay.h"
#include "window/results/StyledLinePainter.h"

#include <QCache>
#include <QStyledItemDelegate>
#include <QTextLayout>

#include <memory>

namespace tidemark {

class ReplacementPreview;

/// Lays out and draws the rows below files: match lines with their numbers in a gutter, wrapped by character
/// over the room beside it, and errors. A long line is shown as an excerpt unless the option says that it is
/// selected. Only what is drawn or measured is laid out, and only the rows used last are kept.
class TDSearchResultsTextFieldCell : public QStyledItemDelegate
{
    Q_OBJECT

public:
    explicit TDSearchResultsTextFieldCell(QObject *parent = nullptr);

    /// A leaf takes the option's whole rectangle; its palette's Base is what is behind the row.
    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    /// The height at the width of the option's rectangle, and at least MINIMUM_ROW_HEIGHT.
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    /// Whether the height depends on whether the row is selected.
    bool isLong(const QStyleOptionViewItem &option, const TDFindResultItem &item) const;

    /// Where a part of a match line stands in a row at the option's place, with its font; the first line of
    /// that part only.
    QRect rectOfText(const QStyleOptionViewItem &option, const TDFindResultItem &item, TextRange range) const;
    /// The same of a match. The start of the line for one that isn't shown.
    QRect rectOfMatch(const QStyleOptionViewItem &option, const TDFindResultItem &item, qint64 match) const;
    /// The gutter of a row at the option's place: at its left whatever way the line runs.
    QRect gutterRect(const QStyleOptionViewItem &option) const;
    /// Where an error in a row at the option's place offers to read its file in another encoding: behind its
    /// text. Empty where it doesn't.
    QRect readAsRect(const QStyleOptionViewItem &option, const TDFindResultItem &item) const;
    /// Digits of the greatest line number that is to fit into the gutter.
    void setGutterDigits(int digits);
    int gutterDigits() const { return _gutterDigits; }

    /// Shown behind each match from now on; null: none is. Asked when something is laid out.
    void setPreview(std::shared_ptr<const ReplacementPreview> preview);
    /// Drops what is laid out of the item, or of everything.
    void forget(const TDFindResultItem &item) { _layouts.remove(item.identity()); }
    void forgetAll() { _layouts.clear(); }

    static constexpr int MINIMUM_ROW_HEIGHT = 15;
    static constexpr int LEAST_GUTTER_DIGITS = 4;
    /// How high a row is for one line in the font.
    static int rowHeight(const QFont &font);

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
        int above = 0; ///< room over the first line
        bool isLong = false;
        bool isWhole = false;
    };

    const Layout &_layout(const QStyleOptionViewItem &option, const TDFindResultItem &item) const;
    QRect _bodyRect(const QStyleOptionViewItem &option) const;
    void _paintMatchLine(QPainter &painter, const QStyleOptionViewItem &option,
                         const TDFindResultItem &item) const;
    void _paintNumber(QPainter &painter, const QStyleOptionViewItem &option, const TDFindResultItem &item,
                      const Layout &layout) const;
    void _paintError(QPainter &painter, const QStyleOptionViewItem &option,
                     const TDFindResultItem &item) const;

    ShownLine _shown(const TDFindResultItem &item, LineExtent extent) const;

    std::shared_ptr<const ReplacementPreview> _preview;
    int _gutterDigits = LEAST_GUTTER_DIGITS;
    mutable QCache<NodeIdentity, Layout> _layouts;
};

} // namespace tidemark
