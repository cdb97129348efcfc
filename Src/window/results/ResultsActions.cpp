#include "window/results/ResultsActions.h"

#include "foundation/LocalizedText.h"
#include "search/LeaveOutPattern.h"
#include "session/UnreadableFiles.h"
#include "window/Workspace.h"
#include "window/results/ResultsNavigation.h"

#include <QAction>
#include <QBuffer>
#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

#include <utility>

namespace tidemark {

ResultsActions::ResultsActions(ResultsNavigation &navigation, std::shared_ptr<Workspace> workspace,
                               QObject *parent)
    : QObject(parent), _navigation(navigation),
      _workspace(workspace ? std::move(workspace) : std::make_shared<DesktopWorkspace>()),
      _openAtMatch(_addAction(localizedString("Open at Match"), &ResultsActions::openAtMatch)),
      _open(_addAction(localizedString("Open"), &ResultsActions::openInFinder)),
      _reveal(_addAction(localizedString("Reveal in Finder"), &ResultsActions::revealInFinder)),
      _readAs(_addAction(localizedString("Read As…"), &ResultsActions::readAs)),
      _copyLine(_addAction(localizedString("Copy Line"), &ResultsActions::copyLine)),
      _copyPath(_addAction(localizedString("Copy Path"), &ResultsActions::copyPath)),
      _copyAs(_menu.addMenu(localizedString("Copy As"))),
      _leaveOutFolder(_addAction(localizedString("Leave Out This Folder"), &ResultsActions::leaveOutFolder)),
      _leaveOutFilesLike(
          _addAction(localizedString("Leave Out Files Like This"), &ResultsActions::leaveOutFilesLike))
{
    const std::pair<const char *, ResultsFormat> formats[] = {
        {"Path, Line, Column and Text", ResultsFormat::Text},
        {"Paths Only", ResultsFormat::Paths},
        {"Markdown", ResultsFormat::Markdown}};
    for (const auto &[text, format] : formats)
        connect(_copyAs->addAction(localizedString(text)), &QAction::triggered, this,
                [this, wanted = format] { copyAs(wanted); });
    _menu.insertSeparator(_copyLine);
    _menu.insertSeparator(_leaveOutFolder);
    _openAtMatch->setObjectName(QStringLiteral("openAtMatch"));
    _copyLine->setObjectName(QStringLiteral("copyLine"));
    _readAs->setObjectName(QStringLiteral("readAs"));
    connect(&_navigation, &ResultsNavigation::selectionChanged, this,
            &ResultsActions::validateUserInterfaceItems);
    validateUserInterfaceItems();
}

QAction *ResultsActions::_addAction(const QString &text, void (ResultsActions::*command)())
{
    QAction *action = _menu.addAction(text);
    connect(action, &QAction::triggered, this, command);
    return action;
}

QMenu *ResultsActions::searchResultsOutLineViewMenu()
{
    validateUserInterfaceItems();
    return &_menu;
}

void ResultsActions::validateUserInterfaceItems()
{
    const auto item = _navigation.selection().currentlySelectedFindResultItem();
    for (QAction *action : {_openAtMatch, _open, _reveal, _copyPath, _leaveOutFilesLike})
        action->setEnabled(item != nullptr);
    _readAs->setEnabled(_fileToReadAs() != nullptr);
    _leaveOutFolder->setEnabled(!_patternForFolder().isEmpty());
    _copyAs->menuAction()->setEnabled(item != nullptr);
    // An error has no text of its own.
    _copyAs->actions().first()->setEnabled(item && (item->matchLine() != nullptr || item->matchCount() > 0));
    _copyLine->setEnabled(item && item->matchLine() != nullptr);
}

void ResultsActions::openAtMatch()
{
    const auto item = _navigation.selection().currentlySelectedFindResultItem();
    const TDMatchLine *line = item ? item->matchLine() : nullptr;
    if (line == nullptr)
        return openInFinder();
    const qint64 index = std::max(qint64(0), line->highlightedMatchIndex());
    const QList<TextRange> ranges = line->matchRanges();
    const qint64 column = index < ranges.size() ? ranges[index].location + 1 : 1;
    _tell(_workspace->openAt(
        {_navigation.selection().pathOfCurrentlySelectedItem(), line->lineNumber(), column}));
}

void ResultsActions::openInFinder()
{
    const FilePath path = _navigation.selection().pathOfCurrentlySelectedItem();
    if (!path.isEmpty())
        _tell(_workspace->open(path));
}

void ResultsActions::revealInFinder()
{
    const FilePath path = _navigation.selection().pathOfCurrentlySelectedItem();
    if (!path.isEmpty())
        _tell(_workspace->reveal(path));
}

void ResultsActions::_tell(const std::optional<QString> &problem)
{
    if (problem)
        Q_EMIT failed(*problem);
}

void ResultsActions::copyLine()
{
    const QString lines = _navigation.selection().selectedLines();
    if (!lines.isNull())
        QGuiApplication::clipboard()->setText(lines);
}

const TDFindResultItem *ResultsActions::_fileToReadAs() const
{
    const auto item = _navigation.selection().currentlySelectedFindResultItem();
    const TDFindResultItem *file = item && item->parent() != nullptr ? item->parent() : item.get();
    return _isReadAsPossible && file != nullptr && mayBeReadAs(*file) ? file : nullptr;
}

void ResultsActions::setReadAsPossible(bool isPossible)
{
    _isReadAsPossible = isPossible;
    validateUserInterfaceItems();
}

void ResultsActions::readAs()
{
    if (const TDFindResultItem *file = _fileToReadAs())
        Q_EMIT readAsRequested(*file);
}

QString ResultsActions::_patternForFolder() const
{
    const FilePath path = _navigation.selection().pathOfCurrentlySelectedItem();
    return path.isEmpty() || !_locations ? QString() : patternForFolderOf(path, _locations());
}

void ResultsActions::leaveOutFolder()
{
    const QString pattern = _patternForFolder();
    if (!pattern.isEmpty())
        Q_EMIT leaveOutRequested(pattern);
}

void ResultsActions::leaveOutFilesLike()
{
    const FilePath path = _navigation.selection().pathOfCurrentlySelectedItem();
    if (!path.isEmpty())
        Q_EMIT leaveOutRequested(patternForFilesLike(path));
}

void ResultsActions::copyPath()
{
    const FilePath path = _navigation.selection().pathOfCurrentlySelectedItem();
    if (!path.isEmpty())
        QGuiApplication::clipboard()->setText(path.displayText());
}

std::unique_ptr<QMimeData> ResultsActions::dragged() const
{
    const TDFindResultItem *last = nullptr;
    QList<QUrl> urls;
    QStringList paths;
    for (const auto &item : _navigation.selection().selectedObjects()) {
        const TDFindResultItem *file = item->parent() != nullptr ? item->parent() : item.get();
        if (std::exchange(last, file) == file)
            continue;
        urls << file->path().toUrl();
        paths << file->path().displayText();
    }
    if (urls.isEmpty())
        return nullptr;
    auto data = std::make_unique<QMimeData>();
    data->setUrls(urls);
    const QString lines = _navigation.selection().selectedLines();
    data->setText(lines.isNull() ? paths.join(u'\n') : lines);
    return data;
}

void ResultsActions::copyAs(ResultsFormat format)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    if (ResultsExport(format, nullptr, buffer).write(_navigation.selection().selectedObjects()) &&
        !buffer.data().isEmpty())
        QGuiApplication::clipboard()->setText(QString::fromUtf8(buffer.data()));
}

} // namespace tidemark
