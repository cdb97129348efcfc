#include "window/results/ResultsFilterBox.h"

#include "foundation/LocalizedText.h"
#include "foundation/UserDefaults.h"
#include "session/FindResults.h"
#include "session/ResultsFilter.h"
#include "window/results/TDSearchResultsOutlineView.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>

#include <utility>

namespace tidemark {

namespace {

/// Fewer lines are all in sight without a further step.
constexpr qsizetype EXPANDED_BELOW = 200;
constexpr int FIELD_CHARACTERS = 24;
/// In the header, before the buttons.
constexpr int PLACE_IN_HEADER = 2;

} // namespace

ResultsFilterBox::ResultsFilterBox(FindResults &results, TDSearchResultsOutlineView &view,
                                   QHBoxLayout &header, std::function<QList<FilePath>()> locations)
    : _results(results), _view(view), _locations(std::move(locations)), _field(new QLineEdit),
      _count(new QLabel)
{
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(_count);
    layout->addWidget(_field);
    _field->setObjectName(QStringLiteral("filterField"));
    _field->setPlaceholderText(localizedString("Filter results"));
    _field->setAccessibleName(localizedString("Filter results"));
    _field->setToolTip(localizedString("Show only results with this text in their path or line"));
    _field->setClearButtonEnabled(true);
    _field->setMinimumWidth(fontMetrics().averageCharWidth() * FIELD_CHARACTERS);
    _field->installEventFilter(this);
    _count->setTextFormat(Qt::PlainText);
    header.insertWidget(PLACE_IN_HEADER, this);
    hide();
    connect(_field, &QLineEdit::textChanged, this, &ResultsFilterBox::_apply);
    connect(&_results, &FindResults::counted, this, &ResultsFilterBox::_showCount);
    connect(&_results, &FindResults::cleared, this, [this] {
        // Nodes that are gone may come back as others.
        _expandedBefore.clear();
        // Another search may be below other locations.
        if (_results.filter())
            _results.setFilter(_filter());
    });
}

std::shared_ptr<const ResultsFilter> ResultsFilterBox::_filter() const
{
    const QString text = _field->text();
    return text.isEmpty() ? nullptr : std::make_shared<const ResultsFilter>(text, _locations());
}

void ResultsFilterBox::open()
{
    show();
    _field->selectAll();
    _field->setFocus(Qt::ShortcutFocusReason);
}

void ResultsFilterBox::close()
{
    _field->clear();
    _view.setFocus(Qt::OtherFocusReason);
    hide();
}

QString ResultsFilterBox::countText() const
{
    return _count->text();
}

void ResultsFilterBox::_apply()
{
    const bool wasFiltered = _results.filter() != nullptr;
    if (!wasFiltered)
        _expandedBefore = _view.expandedFiles();
    _results.setFilter(_filter());
    if (_results.filter())
        _expandWhileFew();
    else
        _view.setExpandedFiles(std::exchange(_expandedBefore, {}) | _view.expandedFiles());
}

void ResultsFilterBox::_expandWhileFew()
{
    if (!UserDefaults::standard().boolForKey(TD_USER_DEFAULTS_NAME_EXPAND_RESULTS))
        return;
    qsizetype lines = 0;
    OutlineView::Files files;
    for (const auto &file : _results.files()) {
        files.insert(file.get());
        lines += file->children().size();
        if (lines >= EXPANDED_BELOW)
            return;
    }
    _view.setExpandedFiles(files);
}

void ResultsFilterBox::_showCount()
{
    const QLocale locale;
    const qsizetype all = _results.countOfAll();
    const QString text = localizedString(all == 1 ? "%@ of %@ file shows" : "%@ of %@ files show");
    _count->setText(_results.filter()
                        ? formatted(text, {locale.toString(_results.count()), locale.toString(all)})
                        : QString());
    _count->setAccessibleName(_count->text());
}

bool ResultsFilterBox::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::ShortcutOverride && event->type() != QEvent::KeyPress)
        return QWidget::eventFilter(watched, event);
    const auto &key = static_cast<const QKeyEvent &>(*event);
    const bool goesOn =
        key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter || key.key() == Qt::Key_Down;
    if ((key.key() != Qt::Key_Escape && !goesOn) || key.modifiers() & ~Qt::KeypadModifier)
        return QWidget::eventFilter(watched, event);
    event->accept();
    if (event->type() == QEvent::KeyPress && goesOn)
        _view.setFocus(Qt::OtherFocusReason);
    else if (event->type() == QEvent::KeyPress)
        close();
    return true;
}

} // namespace tidemark
