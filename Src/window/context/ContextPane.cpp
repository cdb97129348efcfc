#include "window/context/ContextPane.h"

#include "foundation/LocalizedText.h"
#include "foundation/UserDefaults.h"
#include "reading/TDStringEncoding.h"
#include "session/ContextMatches.h"
#include "session/Editors.h"
#include "session/MyDocument.h"
#include "session/ReplaceControl.h"
#include "window/ElidedLabel.h"
#include "window/PlainToolTip.h"
#include "window/context/ContextView.h"
#include "window/results/ResultsFont.h"
#include "window/results/ResultsPane.h"
#include "window/results/ShownReplacements.h"
#include "window/results/TDSearchResultsOutlineView.h"

#include <QAction>
#include <QHBoxLayout>
#include <QSplitter>

namespace tidemark {

namespace {

/// Of the room of both.
constexpr int RESULTS_SHARE = 3;
constexpr int CONTEXT_SHARE = 2;
constexpr int SHARE = 1000;
/// They are as wide as their texts before anything is left between them.
constexpr int LABEL_STRETCH = 100;

QString nameOf(const FilePath &path)
{
    return QString::fromUtf8(path.lastPathComponent());
}

} // namespace

ContextPane::ContextPane(MyDocument &document, ResultsPane &results, ReplaceControl &replace,
                         QAction &showContext)
    : _document(document), _results(results), _replace(replace), _view(new ContextView(_context)),
      _title(new ElidedLabel), _message(new ElidedLabel), _hint(new ElidedLabel)
{
    setObjectName(QStringLiteral("contextPane"));
    _view->setObjectName(QStringLiteral("contextView"));
    _view->setFont(resultsFont(_results.outlineView().font()));
    _view->setAccessibleName(localizedString("Context of the match"));
    _view->setMatches([this](qint64 number, const QString &text) {
        return _file ? contextMatches(*_file, number, text, _results.shownReplacements().preview().get())
                     : QList<ContextMatch>();
    });
    _makeHeader();
    _placeUnderResults();
    _connect(showContext);
    _updateVisibility();
}

void ContextPane::_makeHeader()
{
    auto *header = new QHBoxLayout;
    header->addWidget(_title, LABEL_STRETCH);
    header->addWidget(_message, LABEL_STRETCH);
    header->addStretch(1);
    header->addWidget(_hint, LABEL_STRETCH);
    _title->setHuggingText(true);
    _message->setHuggingText(true);
    _hint->setHuggingText(true);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->addLayout(header);
    layout->addWidget(_view);
}

/// Both share the room that the results have had alone.
void ContextPane::_placeUnderResults()
{
    TDSearchResultsOutlineView &results = _results.outlineView();
    auto *splitter = new QSplitter(Qt::Vertical);
    splitter->setObjectName(QStringLiteral("contextSplitter"));
    splitter->setChildrenCollapsible(false);
    delete results.parentWidget()->layout()->replaceWidget(&results, splitter);
    splitter->addWidget(&results);
    splitter->addWidget(this);
    splitter->setStretchFactor(0, RESULTS_SHARE);
    splitter->setStretchFactor(1, CONTEXT_SHARE);
    splitter->setSizes({RESULTS_SHARE * SHARE, CONTEXT_SHARE * SHARE});
}

void ContextPane::_connect(QAction &showContext)
{
    _soon.setSingleShot(true);
    connect(&_soon, &QTimer::timeout, this, &ContextPane::_update);
    const auto soon = [this] { _soon.start(0); };
    connect(&_results.navigation(), &ResultsNavigation::selectionChanged, this, soon);
    connect(&_replace, &ReplaceControl::replacedMatch, this, soon);
    connect(&_replace, &ReplaceControl::replacing, this, soon);
    connect(&_results.shownReplacements(), &ShownReplacements::changed, _view, &ContextView::updateMatches);
    connect(&_context, &FileContext::opened, this, &ContextPane::_noteFile);
    connect(&_context, &FileContext::arrived, this, &ContextPane::_noteFile);
    connect(_view, &ContextView::returnPressed, _results.resultsActions().openAtMatchAction(),
            &QAction::trigger);
    connect(_view, &ContextView::tooLongToCopy, this, [this] {
        _copyProblem = localizedString("This is too long to be copied.");
        _noteFile();
    });
    connect(&showContext, &QAction::triggered, this, [](bool shown) {
        UserDefaults::standard().setObject(TD_USER_DEFAULTS_NAME_SHOW_CONTEXT, shown);
    });
    connect(&UserDefaults::standard(), &UserDefaults::valueChanged, this,
            [this, &showContext](const QString &key) {
                if (key == TD_USER_DEFAULTS_NAME_RESULTS_FONT ||
                    key == TD_USER_DEFAULTS_NAME_RESULTS_FONT_SIZE)
                    _view->setFont(resultsFont(_results.outlineView().font()));
                if (key != TD_USER_DEFAULTS_NAME_SHOW_CONTEXT)
                    return lookAgain();
                _updateVisibility();
                showContext.setChecked(!isHidden());
            });
    showContext.setChecked(UserDefaults::standard().boolForKey(TD_USER_DEFAULTS_NAME_SHOW_CONTEXT));
}

void ContextPane::_updateVisibility()
{
    const bool isShown = UserDefaults::standard().boolForKey(TD_USER_DEFAULTS_NAME_SHOW_CONTEXT);
    if (!isShown && _view->hasFocus())
        _results.outlineView().setFocus(Qt::OtherFocusReason);
    setVisible(isShown);
    _soon.start(0);
}

/// It may also be read in another encoding, or opened by another editor, by now.
void ContextPane::lookAgain()
{
    if (_file)
        _context.open(_file->path(), TDStringEncoding::userDefaultsEncoding());
    _hint->setWholeText(_file ? _whatReturnDoes() : QString());
}

// -- The match

void ContextPane::_update()
{
    _copyProblem.clear();
    const auto item = isHidden() ? nullptr : _results.navigation().currentlySelectedMatchLineItem();
    const TDFindResultItem *file = item && item->parent() != nullptr ? item->parent() : item.get();
    const FindResultItems &files = _document.findResults().files();
    const bool isListed = file != nullptr && files.value(file->position()).get() == file;
    _file = isListed ? files[file->position()] : nullptr;
    if (_file)
        _showMatch();
    else
        _showNothing();
    _hint->setWholeText(_file ? _whatReturnDoes() : QString());
}

/// A file that was collapsed stands for its first line.
const TDMatchLine *ContextPane::_line() const
{
    const TDMatchLine *line = _results.navigation().currentlySelectedMatchLine();
    const bool hasLines = !_file->children().isEmpty();
    return line == nullptr && hasLines ? _file->children().first()->matchLine() : line;
}

void ContextPane::_showMatch()
{
    const SettledEncoding encoding = _file->encoding();
    _context.open(_file->path(),
                  encoding.isKnown() ? encoding.toReadAgain() : TDStringEncoding::userDefaultsEncoding());
    const QString name = nameOf(_file->path());
    if (const TDMatchLine *line = _line()) {
        const qint64 match = std::max(qint64(0), line->highlightedMatchIndex());
        _title->setWholeText(formatted(localizedString("%@, line %lu"), {name, quint64(line->lineNumber())}));
        _view->showLine(line->lineNumber(), line->savedMatchRanges().value(match).location);
    } else {
        _title->setWholeText(name);
        _view->showLine(0, 0);
    }
    _noteFile();
}

void ContextPane::_showNothing()
{
    _context.close();
    _view->showLine(0, 0);
    _title->setWholeText(localizedString("The file around the highlighted match will appear here."));
}

void ContextPane::_noteFile()
{
    // What was read before may be read again.
    if (!_context.isOpening())
        _message->setWholeText(_copyProblem.isEmpty() ? _problem() : _copyProblem);
    _view->viewport()->setToolTip(_tip());
}

QString ContextPane::_problem() const
{
    if (!_file || _context.path().isEmpty())
        return {};
    if (_context.error())
        return _context.error().localizedFailureReason();
    const bool hasChanged = _file->modificationDate() && _context.modificationDate() &&
                            *_file->modificationDate() != *_context.modificationDate();
    return hasChanged ? localizedString("This file has changed since it was searched.") : QString();
}

QString ContextPane::_tip() const
{
    if (_context.path().isEmpty() || _context.error())
        return {};
    return plainToolTip(_context.path().displayText() + u'\n' +
                        localizedNameOfStringEncoding(_context.encoding()));
}

QString ContextPane::_whatReturnDoes() const
{
    const bool isLine = _results.navigation().currentlySelectedMatchLine() != nullptr;
    const std::optional<QString> editor = isLine ? chosenEditorName() : std::nullopt;
    return editor ? formatted(localizedString("Return opens it in %@"), {*editor})
                  : localizedString("Return opens it with its default program");
}

QString ContextPane::title() const
{
    return _title->wholeText();
}

QString ContextPane::message() const
{
    return _message->wholeText();
}

} // namespace tidemark
