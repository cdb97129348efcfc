#include "window/results/ReadAsCommands.h"

#include "session/SearchControl.h"
#include "session/UnreadableFiles.h"
#include "window/ReadAsDialog.h"
#include "window/results/ResultsActions.h"
#include "window/results/ResultsTreeModel.h"
#include "window/results/TDSearchResultsOutlineView.h"

#include <QAction>

#include <algorithm>

namespace tidemark {

ReadAsCommands::ReadAsCommands(SearchControl &search, const ResultsTreeModel &model,
                               TDSearchResultsOutlineView &view, ResultsActions &actions, QObject *parent)
    : QObject(parent), _search(search), _model(model), _view(view)
{
    connect(&actions, &ResultsActions::readAsRequested, this, &ReadAsCommands::_ask);
    connect(&_view, &TDSearchResultsOutlineView::readAsRequested, actions.readAsAction(), &QAction::trigger);
    connect(&_search, &SearchControl::readAgain, this, &ReadAsCommands::_show);
}

void ReadAsCommands::_ask(const TDFindResultItem &item)
{
    const std::shared_ptr<TDFindResultItem> file = _model.results().files()[item.position()];
    const FindResultItems alike = filesUnreadableLike(*file, _model.results().files());
    const quint64 others = quint64(std::max(qsizetype(1), alike.size()) - 1);
    auto *dialog = new ReadAsDialog(file->path(), file->encoding(), others, _view.window());
    connect(dialog, &ReadAsDialog::chosen, this, [this, file](StringEncoding encoding, bool forAllLikeIt) {
        _search.readAs(forAllLikeIt ? filesUnreadableLike(*file, _model.results().files())
                                    : FindResultItems{file},
                       encoding);
    });
    dialog->open();
}

/// The first of them that shows.
void ReadAsCommands::_show(const FindResultItems &files)
{
    const auto shown = std::find_if(files.begin(), files.end(),
                                    [this](const auto &file) { return _model.results().shows(*file); });
    if (shown == files.end())
        return;
    const QModelIndex index = _model.indexOf(shown->get());
    _view.expandItem(index);
    _view.selectRow(_view.rowOfIndex(index) + 1);
    _view.scrollRowToVisible(_view.selectedRow());
}

} // namespace tidemark
