#include "window/SearchWindowTexts.h"

#include "foundation/LocalizedText.h"

namespace tidemark {

// The texts are shown as they stand, "highlighed" and the wording about case included.

QString searchButtonTitleStart()
{
    return localizedString("Start Search");
}

QString searchButtonTitleStop()
{
    return localizedString("Stop Search");
}

QString tooltipAddLocation()
{
    return localizedString("Locate a file or folder to search. (Cmd+O)");
}

QString tooltipRemoveLocation()
{
    return localizedString("Remove the selected file or folder from the search. (Cmd+P)");
}

QString tooltipFileTypes()
{
    return localizedString("Select kinds of files to include in search. (Cmd+F)");
}

QString tooltipFindText()
{
    return localizedString("Enter text to find");
}

QString tooltipReplaceText()
{
    return localizedString("Enter text that replaces the find text");
}

QString tooltipStartStopSearch()
{
    return localizedString("Start or stop the search. (Cmd+Enter)");
}

QString tooltipIgnoreCase()
{
    return localizedString("Check to perform case sensitive searching. (Cmd+C)");
}

QString tooltipRegularExpression()
{
    return localizedString("Check to use regular expressions in find text. (Cmd+G)");
}

QString tooltipUnicode()
{
    return localizedString("Check to match characters of all languages and to see the whole line, also when "
                           "replacing. (Cmd+U)");
}

QString tooltipWholeWords()
{
    return localizedString("Check to find whole words only. (Cmd+D)");
}

QString tooltipShowReplacements()
{
    return localizedString("Check to see what each match would become in the search results. (Cmd+Shift+R)");
}

QString tooltipReplace()
{
    return localizedString(
        "Replace the currently highlighed match in the search results with the replace text. (Cmd+R)");
}

QString tooltipReplaceAndFind()
{
    return localizedString(
        "Replace the currently highlighed match in the search results with the replace text "
        "and move to the next match. (Cmd+X)");
}

QString tooltipReplaceInSelection()
{
    return localizedString(
        "Replace the currently selected matches in the search results with the replace text. (Cmd+S)");
}

QString tooltipReplaceAll()
{
    return localizedString("Replace all the matches in the search results with the replace text. (Cmd+L)");
}

QString tooltipNavUp()
{
    return localizedString(
        "Highlight the previous match in the search results. (Up; Cmd+Up to move to the first "
        "match in previous file)");
}

QString tooltipNavDown()
{
    return localizedString(
        "Highlight the next match in the search results. (Down; Cmd+Down to move to the first "
        "match in next file)");
}

QString tooltipRemoveSelected()
{
    return localizedString("Remove selected items from search results. (Delete)");
}

QString tooltipExpandCollapse()
{
    return localizedString("Expand or collapse all matches to either show or hide all matches. (Cmd+E)");
}

QString tooltipSearchLocations()
{
    return localizedString("Files and folders to search");
}

QString tooltipSearchResults()
{
    return localizedString("Search results showing lines of files with matches");
}

} // namespace tidemark
