#pragma once

#include <QFrame>
#include <QObject>

class QLabel;

namespace Ui {
class MyDocument;
}

namespace tidemark {

class SearchControl;

/// Says after a search what it left out: at the end of the status line, with the reasons as its tool tip and
/// in a small window that a click opens, and in the empty results with a link that searches everything.
class LeftOutNotice : public QObject
{
    Q_OBJECT

public:
    /// Both must outlive the object.
    LeftOutNotice(Ui::MyDocument &ui, SearchControl &search, QObject *parent = nullptr);

    /// What the results say when they are empty after a search, in place of the given text; false when
    /// nothing was left out that could be searched, and then they say that.
    bool showInEmptyResults(const QString &kinds);
    /// The status line tells something else by now.
    void hide();

Q_SIGNALS:
    void searchOfEverythingRequested();

private:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void _showStatus();
    void _openDetails();
    void _placeLink();

    Ui::MyDocument &_ui;
    SearchControl &_search;
    QLabel *_link; ///< over the empty results
};

} // namespace tidemark
