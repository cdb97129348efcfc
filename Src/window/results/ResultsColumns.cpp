#include "window/results/ResultsColumns.h"

#include "foundation/UserDefaults.h"
#include "window/results/ResultsTreeModel.h"

#include <QHeaderView>

namespace tidemark {

namespace {

/// Narrower than so many times a text's height there is no room for the folders, then none for the
/// encodings, and then none for the counts.
constexpr int FOLDERS_FROM = 45;
constexpr int ENCODINGS_FROM = 40;
constexpr int COUNTS_FROM = 24;

} // namespace

void showColumnsThatFit(QHeaderView &header, int width)
{
    if (header.count() == 0)
        return;
    const int unit = header.parentWidget()->fontMetrics().height();
    const bool areEncodingsWanted = UserDefaults::standard().boolForKey(TD_USER_DEFAULTS_NAME_SHOW_ENCODINGS);
    header.setSectionHidden(ResultsTreeModel::FolderColumn, width < FOLDERS_FROM * unit);
    header.setSectionHidden(ResultsTreeModel::EncodingColumn,
                            width < ENCODINGS_FROM * unit || !areEncodingsWanted);
    header.setSectionHidden(ResultsTreeModel::MatchesColumn, width < COUNTS_FROM * unit);
}

} // namespace tidemark
