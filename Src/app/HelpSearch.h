#pragma once

#include <QTextDocument>
#include <QWidget>

class QLabel;
class QLineEdit;
class QTextBrowser;

namespace tidemark {

/// A bar that finds a text in a book of pages, all in the folder of the page that the browser shows. It
/// begins at the cursor, goes on in the other pages and ends where it began. The browser must outlive it.
class HelpSearch : public QWidget
{
    Q_OBJECT

public:
    /// The pages are file names, in the order of the book.
    HelpSearch(QTextBrowser &browser, const QStringList &pages, QWidget *parent);

    /// Shows the bar, ready for typing.
    void open();
    /// Selects the next or the previous place; false if the text is nowhere in the book.
    bool findNext();
    bool findPrevious();

private:
    void _findWhileTyping();
    bool _find(QTextDocument::FindFlags direction);
    bool _findInOtherPages(QTextDocument::FindFlags direction);
    bool _findFromEnd(QTextDocument::FindFlags direction);

    QTextBrowser &_browser;
    const QStringList _pages;
    QLineEdit *_field;
    QLabel *_outcome;
};

} // namespace tidemark
