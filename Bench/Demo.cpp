#include "Demo.h"

#include "FileDifference.h"

#include "foundation/UserDefaults.h"
#include "search/TDSearchEngine.h"
#include "session/UnreadableFiles.h"
#include "ui_MyDocument.h"
#include "window/ReadAsDialog.h"
#include "window/SearchWindowTexts.h"
#include "window/TDMyDocumentController.h"
#include "window/WindowedDocument.h"
#include "window/context/ContextPane.h"
#include "window/results/ResultsFilterBox.h"
#include "window/results/ResultsPane.h"

#include <QAction>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QTest>

#include <algorithm>
#include <cstdio>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace tidemark {

namespace {

constexpr int PATIENCE_MILLISECONDS = 30000;
constexpr int LINES_TO_SHOW = 3;
constexpr qsizetype FILES_TO_WATCH = 3;

/// Counts what is really in the files, whatever the window shows.
class Count : public TDSearchEngineDelegate
{
public:
    void didFinishSearch(quint64, quint64, quint64 matchCount) override { matches = qint64(matchCount); }
    qint64 matches = -1;
};

void print(const QString &line)
{
    std::printf("%s\n", line.toUtf8().constData());
    std::fflush(stdout);
}

} // namespace

Demo::Demo(const FilePath &folder, const QString &pictures) : _folder(folder), _pictures(pictures) {}

bool Demo::run(const QString &findText, const QString &replaceText)
{
    _open();
    _addFolder();
    _stopSearch(findText);
    _search(findText);
    if (!_expect(_matchesOnDisk(findText) > 3, u"there is something to walk through"_s))
        return false;
    _type(_ui().replaceTextComboBox->lineEdit(), replaceText);
    _showFailedFiles();
    _walk();
    _showContext();
    _filter();
    _export();
    const FileDifference difference(_filesToWatch());
    _replaceOne();
    _replaceSelection();
    _failOnce();
    _replaceAll(findText);
    _undoAndRedo(findText);
    const QStringList changedLines = difference.changedLines(LINES_TO_SHOW);
    _expect(!changedLines.isEmpty(), u"the files have changed:"_s);
    for (const QString &line : changedLines)
        print(line);
    _searchAgain(findText, replaceText);
    return _succeeded;
}

void Demo::_open()
{
    _expect(QDir().mkpath(_pictures), u"the folder for the pictures can be made"_s);
    _application.awakeFromNib();
    _application.applicationDidFinishLaunching();
    _document = _application.documents().value(0);
    _controller = _document->myDocumentController();
    QObject::connect(_document, &MyDocument::resultsStatusTextChanged, [this, shown = QString()]() mutable {
        // The count of files notifies of the line as well.
        if (std::exchange(shown, _document->resultsStatusText()) != shown && !shown.isEmpty())
            print(u"status: "_s + shown);
    });
    _wait(u"the window opens"_s, [this] { return _controller->window()->isVisible(); });
    _controller->window()->activateWindow();
    _picture(u"empty"_s);
}

void Demo::_addFolder()
{
    _controller->locations().addSearchLocations({_folder.toUrl()});
    _expect(_ui().searchLocationsTableView->model()->rowCount() == 1, u"the folder is in the list"_s);
}

void Demo::_stopSearch(const QString &findText)
{
    _type(_ui().findTextComboBox->lineEdit(), findText);
    QTest::keyClick(_ui().findTextComboBox->lineEdit(), Qt::Key_Return);
    QTest::mouseClick(_ui().startStopButton, Qt::LeftButton);
    _expect(!_controller->searching(), u"a click on the same button stops it"_s);
    _wait(u"the status line says so"_s,
          [this] { return _document->resultsStatusText().startsWith(u"Search interrupted ("_s); });
    _picture(u"stopped"_s);
}

void Demo::_search(const QString &findText)
{
    _type(_ui().findTextComboBox->lineEdit(), findText);
    QTest::keyClick(_ui().findTextComboBox->lineEdit(), Qt::Key_Return);
    _expect(_controller->searching(), u"Return starts the search"_s);
    _expect(_ui().startStopButton->text() == searchButtonTitleStop(), u"the button can stop it"_s);
    _picture(u"searching"_s);
    _wait(u"the search ends"_s, [this] { return !_controller->searching(); });
    _expect(_document->resultsStatusText().startsWith(u"Search completed ("_s), u"the status line says so"_s);
    _expect(_document->filesWithMatchesCount() == _document->findResults().count(), u"the counts agree"_s);
    _picture(u"results"_s);
}

void Demo::_showFailedFiles()
{
    TDSearchResultsOutlineView &view = _controller->resultsPane().outlineView();
    const FindResultItems &files = _document->findResults().files();
    const auto failed = std::find_if(files.begin(), files.end(), [](const auto &file) {
        return !file->children().isEmpty() && file->children().first()->error();
    });
    if (!_expect(failed != files.end(), u"a file that can't be decoded is listed"_s))
        return;
    view.setFocus();
    view.selectRow(view.rowOfItem(**failed));
    view.scrollRowToVisible(view.selectedRow() + 1);
    print(u"error: "_s + (*failed)->children().first()->error().localizedFailureReason());
    _picture(u"error row"_s);
    _readAs();
    _controller->resultsPane().navigation().selectFirstMatch();
    view.scrollRowToVisible(0);
}

/// In the likeliest encoding.
void Demo::_readAs()
{
    ResultsActions &actions = _controller->resultsPane().resultsActions();
    actions.validateUserInterfaceItems();
    actions.readAsAction()->trigger();
    auto *panel = _controller->window()->findChild<ReadAsDialog *>();
    const auto *encodings = panel != nullptr ? panel->findChild<QListWidget *>(u"encodings"_s) : nullptr;
    if (!_expect(encodings != nullptr, u"a panel asks for the encoding"_s))
        return;
    _wait(u"it proposes one"_s, [encodings] { return !encodings->selectedItems().isEmpty(); });
    print(u"encoding: "_s + encodings->currentItem()->text());
    _save(*panel, u"read as"_s);
    panel->accept();
    _wait(u"the file is searched again"_s, [this] { return !_controller->searching(); });
    const FindResultItems &files = _document->findResults().files();
    _expect(std::none_of(files.begin(), files.end(), [](const auto &file) { return couldNotBeRead(*file); }),
            u"every file could be read"_s);
    _picture(u"read in another encoding"_s);
}

void Demo::_walk()
{
    // The rows of files that can't be searched are walked over too.
    const TDMatchLine *line = nullptr;
    for (int step = 0; step < 3 || (line == nullptr && step < 10); ++step) {
        QTest::keyClick(_controller->window(), Qt::Key_F4);
        line = _controller->resultsPane().navigation().currentlySelectedMatchLine();
    }
    _expect(line != nullptr && line->highlightedMatchIndex() >= 0, u"F4 walks to a match"_s);
    _picture(u"walking"_s);
}

void Demo::_showContext()
{
    _controller->actions().showContext->trigger();
    const TDFindResultItem *file =
        _controller->resultsPane().navigation().currentlySelectedMatchLineItem()->parent();
    _wait(u"the file around the match shows"_s, [this, file] {
        return _controller->contextPane().title().contains(file->filenameMatchLineSortKey()) &&
               _controller->contextPane().context().isLookedThrough();
    });
    _picture(u"context"_s);
}

void Demo::_filter()
{
    const FindResults &results = _document->findResults();
    const qsizetype before = results.count();
    _controller->actions().filterResults->trigger();
    QLineEdit &field = _controller->resultsPane().filterBox().field();
    _type(&field, u".h"_s);
    _wait(u"the filter leaves some of the files"_s,
          [&] { return results.count() > 0 && results.count() < before; });
    _picture(u"filtered"_s);
    QTest::keyClick(&field, Qt::Key_Escape);
    _wait(u"without it all of them show"_s, [&] { return results.count() == before; });
}

void Demo::_export()
{
    const QString path = _pictures + u"/results.csv"_s;
    _controller->actions().exportResults->trigger();
    QFileDialog *panel = nullptr;
    _wait(u"a panel asks where to"_s, [&] {
        panel = _controller->window()->findChild<QFileDialog *>();
        return panel != nullptr && panel->isVisible();
    });
    if (panel == nullptr)
        return;
    panel->selectFile(path);
    static_cast<QDialog *>(panel)->accept();
    _wait(u"the results are in a file"_s, [&] {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) && file.readAll().count('\n') > 1;
    });
}

void Demo::_undoAndRedo(const QString &findText)
{
    const auto trigger = [this](QAction *action) {
        _wait(u"there is: "_s + action->text(), [action] { return action->isEnabled(); });
        action->trigger();
    };
    trigger(_controller->actions().undoReplacing);
    _wait(u"undone, every match is back"_s,
          [&] { return !_controller->isReplacing() && _matchesOnDisk(findText) > 0; });
    _picture(u"undone"_s);
    trigger(_controller->actions().redoReplacing);
    _wait(u"redone, none is left"_s,
          [&] { return !_controller->isReplacing() && _matchesOnDisk(findText) == 0; });
    _picture(u"redone"_s);
}

void Demo::_replaceOne()
{
    const qint64 before = _matchesOnDisk(_document->findText());
    _controller->actions().replace->trigger();
    _expect(_matchesOnDisk(_document->findText()) == before - 1, u"one match is replaced"_s);
    _picture(u"replaced one"_s);
}

void Demo::_replaceSelection()
{
    const qint64 before = _matchesOnDisk(_document->findText());
    _controller->actions().nextMatch->trigger();
    _controller->actions().extendToNextMatch->trigger();
    _picture(u"selection"_s);
    _controller->actions().replaceSelection->trigger();
    if (_confirm(u"Replace Selection"_s, u"confirm selection"_s))
        _wait(u"the selected matches are replaced"_s, [this, before] {
            return !_controller->isReplacing() && _matchesOnDisk(_document->findText()) < before;
        });
    _picture(u"replaced selection"_s);
}

/// What another program changes between search and replacement stays as that program left it.
void Demo::_failOnce()
{
    const FindResultItems &files = _document->findResults().files();
    const auto outside = std::find_if(files.rbegin(), files.rend(),
                                      [](const auto &file) { return file->matchCount().value_or(0) > 0; });
    if (!_expect(outside != files.rend(), u"a file is left to be changed by someone else"_s))
        return;
    QFile file(QFile::decodeName((*outside)->path().bytes()));
    const auto later = QDateTime::currentDateTime().addSecs(60);
    _expect(file.open(QIODevice::ReadWrite) && file.setFileTime(later, QFileDevice::FileModificationTime),
            u"someone else changes "_s + (*outside)->path().displayText());
    file.close();
    _controller->actions().replaceAll->trigger();
    if (!_confirm(u"Replace All"_s, u"confirm with failure"_s))
        return;
    QMessageBox *summary = nullptr;
    _wait(u"one summary tells what failed"_s, [this, &summary] {
        const auto sheets = _controller->window()->findChildren<QMessageBox *>();
        for (QMessageBox *sheet : sheets) {
            if (sheet->isVisible() && !_controller->isReplacing())
                summary = sheet;
        }
        return summary != nullptr;
    });
    if (summary == nullptr)
        return;
    print(u"sheet: "_s + summary->text().simplified());
    _expect(summary->text().contains((*outside)->filenameMatchLineSortKey()), u"it names the file"_s);
    _save(*summary, u"failure summary"_s);
    summary->close();
    // Typing it anew empties the document's first.
    const QString findText = _document->findText();
    _search(findText);
}

QList<FilePath> Demo::_filesToWatch() const
{
    QList<FilePath> watched;
    for (const auto &file : _document->findResults().files()) {
        if (watched.size() < FILES_TO_WATCH && file->matchCount().value_or(0) > 0 &&
            file->path().bytes().contains("source"))
            watched << file->path();
    }
    return watched;
}

void Demo::_replaceAll(const QString &findText)
{
    _controller->actions().replaceAll->trigger();
    if (_confirm(u"Replace All"_s, u"confirm all"_s))
        _wait(u"all matches of "_s + findText + u" are replaced"_s,
              [this] { return !_controller->isReplacing() && _matchesOnDisk(_document->findText()) == 0; });
    _picture(u"replaced all"_s);
}

void Demo::_searchAgain(const QString &findText, const QString &replaceText)
{
    _search(findText);
    _expect(_matchesOnDisk(findText) == 0, u"nothing is left to find"_s);
    _search(replaceText);
    _expect(_matchesOnDisk(replaceText) > 0, u"the replace text is in the files"_s);
}

bool Demo::_expect(bool holds, const QString &what)
{
    print((holds ? u"ok: "_s : u"FAILED: "_s) + what);
    _succeeded = _succeeded && holds;
    return holds;
}

bool Demo::_wait(const QString &what, const std::function<bool()> &condition)
{
    return _expect(QTest::qWaitFor(condition, PATIENCE_MILLISECONDS), what);
}

void Demo::_picture(const QString &name)
{
    QCoreApplication::processEvents();
    _save(*_controller->window(), name);
}

void Demo::_save(QWidget &shown, QString name)
{
    const QString number = QString::number(++_pictureNumber).rightJustified(2, u'0');
    const QString file = number + u'-' + name.replace(u' ', u'-') + u".png"_s;
    _expect(shown.grab().save(_pictures + u'/' + file), u"picture "_s + file);
}

void Demo::_type(QLineEdit *field, const QString &text)
{
    field->setFocus();
    field->selectAll();
    QTest::keyClick(field, Qt::Key_Backspace);
    QTest::keyClicks(field, text);
    _expect(field->text() == text, u"typed: "_s + text);
}

bool Demo::_confirm(const QString &buttonText, const QString &pictureName)
{
    QMessageBox *sheet = nullptr;
    _wait(u"a sheet asks first"_s, [&] {
        sheet = _controller->window()->findChild<QMessageBox *>();
        return sheet != nullptr && sheet->isVisible();
    });
    if (sheet == nullptr)
        return false;
    _save(*sheet, pictureName);
    const QList<QAbstractButton *> buttons = sheet->buttons();
    for (QAbstractButton *button : buttons) {
        if (button->text() == buttonText) {
            QTest::mouseClick(button, Qt::LeftButton);
            return true;
        }
    }
    return _expect(false, u"the sheet has a button "_s + buttonText);
}

Ui::MyDocument &Demo::_ui() const
{
    return _controller->window()->ui();
}

qint64 Demo::_matchesOnDisk(const QString &text) const
{
    const auto count = std::make_shared<Count>();
    TDSearchEngine engine;
    engine.setDelegate(count);
    engine.startSearch(text, _document->searchLocations(),
                       !UserDefaults::standard().boolFor(BooleanSetting::IgnoreCase));
    return count->matches;
}

} // namespace tidemark
