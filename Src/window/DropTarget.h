#pragma once

#include <QObject>

class QDropEvent;
class QWidget;

namespace tidemark {

class SearchLocationsController;
class SearchWindow;
class TDTableViewDragDropArrayController;

/// Lets files and folders be dropped anywhere on a search window, and shows while they are dragged over it
/// that they can be.
class DropTarget : public QObject
{
    Q_OBJECT

public:
    /// Fields that the window gets later on take drops as texts. All must outlive the object.
    DropTarget(SearchWindow &window, TDTableViewDragDropArrayController &locations,
               SearchLocationsController &controller, QObject *parent);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    bool _takes(const QDropEvent &event) const;
    /// False leaves the event to the widget.
    bool _handle(QObject *watched, QDropEvent &event);

    SearchWindow &_window;
    TDTableViewDragDropArrayController &_locations;
    SearchLocationsController &_controller;
    QWidget *_mark;
};

} // namespace tidemark
