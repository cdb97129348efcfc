#pragma once

#include "session/FileContext.h"

#include <QTimer>
#include <QWidget>

class QAction;

namespace tidemark {

class ContextView;
class ElidedLabel;
class MyDocument;
class ReplaceControl;
class ResultsPane;
class TDFindResultItem;
class TDMatchLine;

/// The pane under the results: the file around the highlighted match as it is now, what can be told about it,
/// and what Return does. While it is hidden nothing is read.
class ContextPane : public QWidget
{
    Q_OBJECT

public:
    /// Takes its place under the results, hidden unless the settings show it. All must outlive the object.
    ContextPane(MyDocument &document, ResultsPane &results, ReplaceControl &replace, QAction &showContext);

    ContextView &view() const { return *_view; }
    const FileContext &context() const { return _context; }
    /// What stands above the file.
    QString title() const;
    QString message() const;
    /// The file may have been changed by somebody else.
    void lookAgain();

private:
    void _makeHeader();
    void _placeUnderResults();
    void _connect(QAction &showContext);
    void _updateVisibility();
    void _update();
    void _showMatch();
    const TDMatchLine *_line() const;
    void _showNothing();
    void _noteFile();
    QString _problem() const;
    QString _tip() const;
    QString _whatReturnDoes() const;

    MyDocument &_document;
    ResultsPane &_results;
    ReplaceControl &_replace;
    FileContext _context;
    ContextView *_view;
    ElidedLabel *_title;
    ElidedLabel *_message;
    ElidedLabel *_hint;
    QTimer _soon; ///< one update for many changes
    std::shared_ptr<TDFindResultItem> _file;
    QString _copyProblem;
};

} // namespace tidemark
