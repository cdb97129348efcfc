#pragma once

#include <QString>

namespace tidemark {

// What the search window's buttons say and its tool tips tell, in the user's language and with this system's
// keys.

QString searchButtonTitleStart();
QString searchButtonTitleStop();
QString tooltipAddLocation();
QString tooltipRemoveLocation();
QString tooltipFileTypes();
QString tooltipFindText();
QString tooltipReplaceText();
QString tooltipStartStopSearch();
QString tooltipIgnoreCase();
QString tooltipRegularExpression();
QString tooltipUnicode();
QString tooltipWholeWords();
QString tooltipShowReplacements();
QString tooltipReplace();
QString tooltipReplaceAndFind();
QString tooltipReplaceInSelection();
QString tooltipReplaceAll();
QString tooltipNavUp();
QString tooltipNavDown();
QString tooltipRemoveSelected();
QString tooltipExpandCollapse();
QString tooltipSearchLocations();
QString tooltipSearchResults();

} // namespace tidemark
