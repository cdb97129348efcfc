#pragma once

#include "session/ContextMatches.h"
#include "session/FileContext.h"
#include "window/context/ContextLine.h"

#include <QAbstractScrollArea>
#include <QTextLayout>

#include <functional>
#include <memory>

namespace tidemark {

/// Shows a file's lines with their numbers, the whole file to be scrolled through and selected in. Only the
/// lines in sight are asked for and laid out. Lines have the same height; the scroll bar counts them.
class ContextView : public QAbstractScrollArea
{
    Q_OBJECT

public:
    /// The context must outlive the view.
    explicit ContextView(FileContext &context, QWidget *parent = nullptr);

    /// Which matches are on a line that reads so.
    using Matches = std::function<QList<ContextMatch>(qint64 number, const QString &text)>;
    void setMatches(Matches matches) { _matches = std::move(matches); }
    /// The line stands out and is brought into sight, with this position of it. 0: none stands out.
    void showLine(qint64 number, qsizetype position);
    qint64 shownLine() const { return _shownLine; }
    /// Its matches look different now.
    void updateMatches() { viewport()->update(); }

    bool hasSelection() const { return _caret != _anchor; }
    void selectAll();
    /// To the clipboard, as soon as the lines are read.
    void copy();
    /// What is spoken of: the line with the caret.
    QString spokenText() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    void returnPressed();
    void copied();
    void tooLongToCopy();

protected:
    bool event(QEvent *event) override;
    void changeEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void scrollContentsBy(int dx, int dy) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;

private:
    struct Place
    {
        qint64 line = 1;
        qsizetype position = 0;
        friend auto operator<=>(const Place &, const Place &) = default;
    };
    /// A line laid out.
    struct Row
    {
        explicit Row(ContextLine shown) : line(std::move(shown)) {}

        ContextLine line;
        QTextLayout layout;
        QTextLine text() const { return layout.lineAt(0); }
    };

    void _opened();
    void _arrived();
    void _askForLines();
    void _updateScrollBars();
    void _reveal(Place place, bool centered);
    std::unique_ptr<Row> _row(qint64 number) const;
    qint64 _firstLine() const;
    int _rowHeight() const;
    int _fullRows() const;
    int _gutter() const;
    void _paintRow(QPainter &painter, qint64 number, const QRect &rect) const;
    QList<QTextLayout::FormatRange> _selection(const Row &row, qint64 number) const;
    void _paintEmptyMatches(QPainter &painter, const Row &row, QPointF origin) const;
    bool _moveCaret(const QKeyEvent &event);
    Place _placeAfter(int key, bool withControl) const;
    Place _placeAt(QPoint point) const;
    void _setCaret(Place place, bool extends);
    void _selectWord(Place place);

    FileContext &_context;
    Matches _matches;
    qint64 _shownLine = 0;
    qsizetype _shownPosition = 0;
    bool _isToBeRevealed = false; ///< once enough of the file is known
    Place _caret;
    Place _anchor;
    mutable int _widest = 0; ///< of the lines laid out
};

} // namespace tidemark
