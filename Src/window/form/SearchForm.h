#pragma once

#include <QObject>

#include <functional>

namespace Ui {
class MyDocument;
}

namespace tidemark {

class WindowedDocument;
class SearchControl;
class SearchLocationsController;
class SearchWindow;
class TDTableViewDragDropArrayController;
struct SearchWindowActions;

/// The upper pane of a search window: keeps its controls and the document the same, and shows whether a
/// search runs.
class SearchForm : public QObject
{
    Q_OBJECT

public:
    /// All must outlive the object.
    SearchForm(WindowedDocument &document, SearchWindow &window, const SearchWindowActions &actions,
               SearchControl &search, SearchLocationsController &locations);

    /// The find field gets the keyboard, its text selected.
    void focusFindText();
    /// False while nothing may start a search.
    void setSearchEnabled(bool enabled);
    /// While something depends on the locations.
    void setLocationsReadOnly(bool readOnly);
    void showFileTypes();
    /// To be called when the window has all its fields.
    void takeDropsAnywhere(SearchWindow &window);

Q_SIGNALS:
    void addLocationRequested();
    void startRequested();

private:
    void _setUpLooks();
    void _setUpToolTips();
    void _setUpFields();
    void _setUpOptions();
    void _setUpLocations();
    void _setUpStartStop();
    void _removeSelectedLocations();
    void _noteSelectedLocations();
    void _showSearching(bool searching);

    WindowedDocument &_document;
    Ui::MyDocument &_ui;
    const SearchWindowActions &_actions;
    SearchControl &_search;
    SearchLocationsController &_locations;
    TDTableViewDragDropArrayController *_locationsModel;
};

} // namespace tidemark
