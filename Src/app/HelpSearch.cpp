#include "app/HelpSearch.h"

#include "foundation/LocalizedText.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QTextBrowser>

namespace tidemark {

HelpSearch::HelpSearch(QTextBrowser &browser, const QStringList &pages, QWidget *parent)
    : QWidget(parent), _browser(browser), _pages(pages), _field(new QLineEdit(this)),
      _outcome(new QLabel(this))
{
    _field->setAccessibleName(localizedString("Find"));
    _field->setPlaceholderText(localizedString("Find"));
    _field->setClearButtonEnabled(true);
    auto *layout = new QHBoxLayout(this);
    layout->addWidget(_field);
    layout->addWidget(_outcome);
    setFocusProxy(_field);
    setAutoFillBackground(true);
    connect(_field, &QLineEdit::textEdited, this, &HelpSearch::_findWhileTyping);
    connect(_field, &QLineEdit::returnPressed, this, &HelpSearch::findNext);
}

void HelpSearch::open()
{
    show();
    _field->setFocus(Qt::ShortcutFocusReason);
    _field->selectAll();
}

bool HelpSearch::findNext()
{
    return _find({});
}

bool HelpSearch::findPrevious()
{
    return _find(QTextDocument::FindBackward);
}

/// What is found already may grow with the text.
void HelpSearch::_findWhileTyping()
{
    QTextCursor cursor = _browser.textCursor();
    cursor.setPosition(cursor.selectionStart());
    _browser.setTextCursor(cursor);
    (void)findNext();
}

bool HelpSearch::_find(QTextDocument::FindFlags direction)
{
    const QString text = _field->text();
    const bool isFound = text.isEmpty() || _browser.find(text, direction) || _findInOtherPages(direction) ||
                         _findFromEnd(direction);
    _outcome->setText(isFound ? QString() : localizedString("Not found"));
    return isFound && !text.isEmpty();
}

bool HelpSearch::_findInOtherPages(QTextDocument::FindFlags direction)
{
    const qsizetype step = direction.testFlag(QTextDocument::FindBackward) ? _pages.size() - 1 : 1;
    const qsizetype current = _pages.indexOf(_browser.source().fileName());
    for (qsizetype count = 1, next = current; count < _pages.size(); ++count) {
        next = (next + step) % _pages.size();
        const QUrl page(_pages[next]);
        QTextDocument document;
        document.setHtml(_browser.loadResource(QTextDocument::HtmlResource, page).toString());
        if (document.find(_field->text()).isNull())
            continue;
        _browser.setSource(page);
        return _findFromEnd(direction);
    }
    return false;
}

/// Over the whole page, from the end where the direction begins.
bool HelpSearch::_findFromEnd(QTextDocument::FindFlags direction)
{
    const QTextCursor before = _browser.textCursor();
    _browser.moveCursor(direction.testFlag(QTextDocument::FindBackward) ? QTextCursor::End
                                                                        : QTextCursor::Start);
    if (_browser.find(_field->text(), direction))
        return true;
    _browser.setTextCursor(before);
    return false;
}

} // namespace tidemark
