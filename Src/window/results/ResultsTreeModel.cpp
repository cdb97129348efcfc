#include "window/results/ResultsTreeModel.h"

#include "foundation/LocalizedText.h"
#include "foundation/UserDefaults.h"
#include "session/UnreadableFiles.h"
#include "text/CharacterSets.h"
#include "window/Colors.h"
#include "window/PlainToolTip.h"
#include "window/results/FileIcons.h"
#include "window/results/FolderTexts.h"
#include "window/results/MatchLineDisplay.h"

#include <QFont>
#include <QGuiApplication>
#include <QLocale>
#include <QPalette>
#include <QPointer>

#include <algorithm>
#include <numeric>

namespace tidemark {

namespace {

QString reasonWithSystemText(const TDError &error)
{
    const auto underlying = error.userInfo().value(TDError::UNDERLYING_ERROR_KEY).value<TDError>();
    const QString reason = error.localizedFailureReason();
    return underlying ? reason + u'\n' + underlying.localizedFailureReason() : reason;
}

QString spokenMatches(quint64 count)
{
    return formatted(localizedString(count == 1 ? "%lu match" : "%lu matches"), {count});
}

constexpr qsizetype LINES_COUNTED_AT_ONCE = 1 << 14;

} // namespace

ResultsTreeModel::ResultsTreeModel(FindResults &results, QObject *parent)
    : QAbstractItemModel(parent), _results(results)
{
    _connectResults();
}

void ResultsTreeModel::_connectResults()
{
    connect(&_results, &FindResults::aboutToClear, this, &ResultsTreeModel::_beginReset);
    connect(&_results, &FindResults::cleared, this, [this] {
        _sortColumn = -1;
        _endReset();
    });
    connect(&_results, &FindResults::aboutToThinOut, this, &ResultsTreeModel::_beginReset);
    connect(&_results, &FindResults::thinnedOut, this, &ResultsTreeModel::_endReset);
    connect(&_results, &FindResults::aboutToFilter, this, &ResultsTreeModel::_beginReset);
    connect(&_results, &FindResults::filtered, this, &ResultsTreeModel::_endReset);
    connect(&_results, &FindResults::aboutToAppend, this, [this](qsizetype first, qsizetype count) {
        beginInsertRows({}, int(first), int(first + count) - 1);
        // Also the first ones, when the list was empty.
        if (_sortColumn < 0)
            return;
        for (qsizetype position = first; position < first + count; ++position) {
            _shownOrder << position;
            _rows << position;
        }
    });
    connect(&_results, &FindResults::appended, this, [this] {
        endInsertRows();
        if (_sortColumn >= 0)
            _changeShownOrder();
    });
    connect(&_results, &FindResults::aboutToGrow, this,
            [this](const TDFindResultItem *file, qsizetype first, qsizetype count) {
                beginInsertRows(indexOf(file), int(first), int(first + count) - 1);
            });
    connect(&_results, &FindResults::grown, this, [this](const TDFindResultItem *file) {
        endInsertRows();
        noteChanged(*file);
        if (_sortColumn == MatchesColumn)
            _changeShownOrder();
    });
    connect(&_results, &FindResults::aboutToRemove, this, &ResultsTreeModel::_beginRemove);
    connect(&_results, &FindResults::removed, this, &ResultsTreeModel::_endRemove);
}

QModelIndex ResultsTreeModel::index(int row, int column, const QModelIndex &parent) const
{
    if (row < 0 || column < 0 || column >= COLUMN_COUNT || row >= rowCount(parent))
        return {};
    if (!parent.isValid())
        return createIndex(row, column, file(row).get());
    const auto *parentItem = static_cast<TDFindResultItem *>(parent.internalPointer());
    return createIndex(row, column, parentItem->children()[row].get());
}

QModelIndex ResultsTreeModel::parent(const QModelIndex &child) const
{
    if (!child.isValid())
        return {};
    TDFindResultItem *file = static_cast<TDFindResultItem *>(child.internalPointer())->parent();
    return file != nullptr ? createIndex(_row(file->position()), 0, file) : QModelIndex();
}

QModelIndex ResultsTreeModel::sibling(int row, int column, const QModelIndex &index) const
{
    if (index.isValid() && row == index.row() && column >= 0 && column < COLUMN_COUNT)
        return createIndex(row, column, index.internalPointer());
    return QAbstractItemModel::sibling(row, column, index);
}

int ResultsTreeModel::rowCount(const QModelIndex &parent) const
{
    if (!parent.isValid())
        return int(_results.count());
    if (parent.column() != 0)
        return 0;
    return int(static_cast<TDFindResultItem *>(parent.internalPointer())->children().size());
}

int ResultsTreeModel::columnCount(const QModelIndex & /*parent*/) const
{
    return COLUMN_COUNT;
}

bool ResultsTreeModel::hasChildren(const QModelIndex &parent) const
{
    return rowCount(parent) > 0;
}

Qt::ItemFlags ResultsTreeModel::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return {};
    const Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    return index.parent().isValid() ? flags | Qt::ItemNeverHasChildren : flags;
}

std::shared_ptr<TDFindResultItem> ResultsTreeModel::item(const QModelIndex &index) const
{
    if (!index.isValid())
        return {};
    const auto *node = static_cast<TDFindResultItem *>(index.internalPointer());
    return node->parent() != nullptr ? node->parent()->children()[index.row()] : file(index.row());
}

QModelIndex ResultsTreeModel::indexOf(const TDFindResultItem *item) const
{
    if (item == nullptr)
        return {};
    if (item->parent() == nullptr)
        return index(_row(item->position()), 0);
    return index(int(item->position()), 0, indexOf(item->parent()));
}

// -- Sorting

void ResultsTreeModel::sort(int column, Qt::SortOrder order)
{
    if (column == _sortColumn && order == _sortOrder)
        return;
    _sortColumn = column;
    _sortOrder = order;
    _changeShownOrder();
}

void ResultsTreeModel::_changeShownOrder()
{
    Q_EMIT layoutAboutToBeChanged({}, VerticalSortHint);
    _sortShownOrder();
    const QModelIndexList old = persistentIndexList();
    QModelIndexList moved;
    moved.reserve(old.size());
    for (const QModelIndex &index : old) {
        const auto *node = static_cast<TDFindResultItem *>(index.internalPointer());
        moved << (node->parent() != nullptr
                      ? index
                      : createIndex(_row(node->position()), index.column(), index.internalPointer()));
    }
    changePersistentIndexList(old, moved);
    Q_EMIT layoutChanged({}, VerticalSortHint);
}

void ResultsTreeModel::_sortShownOrder()
{
    _shownOrder.clear();
    _rows.clear();
    if (_sortColumn < 0 || _results.isEmpty())
        return;
    _shownOrder.resize(_results.count());
    std::iota(_shownOrder.begin(), _shownOrder.end(), 0);
    const FindResultItems &files = _results.files();
    std::stable_sort(_shownOrder.begin(), _shownOrder.end(), [this, &files](qsizetype left, qsizetype right) {
        return _sortOrder == Qt::AscendingOrder ? _isShownBefore(*files[left], *files[right])
                                                : _isShownBefore(*files[right], *files[left]);
    });
    _rows.resize(_shownOrder.size());
    for (qsizetype row = 0; row < _shownOrder.size(); ++row)
        _rows[_shownOrder[row]] = row;
}

bool ResultsTreeModel::_isShownBefore(const TDFindResultItem &left, const TDFindResultItem &right) const
{
    if (_sortColumn == MatchesColumn)
        return _matchCount(left).value_or(0) < _matchCount(right).value_or(0);
    if (_sortColumn == FolderColumn)
        return left.displayPath().compare(right.displayPath(), Qt::CaseInsensitive) < 0;
    if (_sortColumn == EncodingColumn)
        return encodingText(left.encoding()).compare(encodingText(right.encoding()), Qt::CaseInsensitive) < 0;
    return left.filenameMatchLineSortKey().compare(right.filenameMatchLineSortKey(), Qt::CaseInsensitive) < 0;
}

// -- Changes

void ResultsTreeModel::_beginRemove(const TDFindResultItem *parent, qsizetype first, qsizetype count)
{
    // In a sorted view neighbours in the list stand anywhere.
    if (parent == nullptr && !_shownOrder.isEmpty())
        _beginReset();
    else
        beginRemoveRows(indexOf(parent), int(first), int(first + count) - 1);
}

void ResultsTreeModel::_endRemove()
{
    if (_isResetting) {
        _endReset();
        return;
    }
    // Those of the removed, and of the file that lost lines.
    _knownCounts.clear();
    endRemoveRows();
}

void ResultsTreeModel::_beginReset()
{
    _isResetting = true;
    beginResetModel();
}

void ResultsTreeModel::_endReset()
{
    _isResetting = false;
    _knownCounts.clear();
    _sortShownOrder();
    endResetModel();
}

void ResultsTreeModel::noteChanged(const TDFindResultItem &item)
{
    if (item.parent() == nullptr)
        _knownCounts.remove(item.identity());
    else
        noteChanged(*item.parent());
    noteLooksChanged(item);
}

void ResultsTreeModel::noteLooksChanged(const TDFindResultItem &item)
{
    const QModelIndex changed = indexOf(&item);
    Q_EMIT dataChanged(changed, changed.siblingAtColumn(COLUMN_COUNT - 1));
}

void ResultsTreeModel::noteFileChanged(const TDFindResultItem &file)
{
    noteChanged(file);
    const QModelIndex parent = indexOf(&file);
    if (const int count = rowCount(parent))
        Q_EMIT dataChanged(index(0, 0, parent), index(count - 1, COLUMN_COUNT - 1, parent));
}

void ResultsTreeModel::noteAllChanged(const std::function<void()> &nowAndThen)
{
    const QPointer self(this);
    QHash<NodeIdentity, Counts> countedFiles;
    const FindResultItems files = nowAndThen ? _results.files() : FindResultItems();
    for (const auto &file : files) {
        const qsizetype lines = file->matches() == nullptr ? 0 : file->matches()->lines.size();
        if (lines <= LINES_COUNTED_AT_ONCE || _lacksLines(*file))
            continue;
        Counts counts;
        while (counts.lines < lines) {
            counts.add(file->matches()->lines, std::min(lines, counts.lines + LINES_COUNTED_AT_ONCE));
            nowAndThen();
            if (!self)
                return;
        }
        counts.shown = file->children().size();
        countedFiles.insert(file->identity(), counts);
    }
    _knownCounts = std::move(countedFiles);
    if (!_results.isEmpty())
        Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, COLUMN_COUNT - 1));
}

// -- What is shown

void ResultsTreeModel::Counts::add(const TDMatchLine &line)
{
    matches += line.numberOfMatches();
    replaced += line.numberOfReplacedMatches();
}

void ResultsTreeModel::Counts::add(const MatchLines &found, qsizetype end)
{
    for (; lines < end; ++lines)
        add(*found[lines]);
}

std::optional<qint32> ResultsTreeModel::_matchCount(const TDFindResultItem &file) const
{
    const Counts &counts = _counts(file);
    const bool isKnown = counts.isOfRows || counts.lines > 0;
    return isKnown ? std::optional(qint32(counts.matches)) : std::nullopt;
}

bool ResultsTreeModel::_lacksLines(const TDFindResultItem &file) const
{
    return _results.isPartlyHidden(file) ||
           (file.matches() != nullptr && file.children().size() < file.matches()->lines.size());
}

const ResultsTreeModel::Counts &ResultsTreeModel::_counts(const TDFindResultItem &file) const
{
    const bool hasMatches = file.matches() != nullptr;
    const qsizetype lines = hasMatches ? file.matches()->lines.size() : 0;
    const auto known = _knownCounts.constFind(file.identity());
    // A large file's lines come, or are put in place of others, while nobody looks.
    if (known != _knownCounts.constEnd() && known->lines == lines && known->shown == file.children().size())
        return *known;
    const bool isOfRows = _lacksLines(file);
    // Whatever else changes a file's lines makes the counts unknown: these are further ones.
    const bool hasGrown =
        known != _knownCounts.constEnd() && !known->isOfRows && !isOfRows && known->lines < lines;
    Counts counts = hasGrown ? *known : Counts();
    for (const auto &item : isOfRows ? file.children() : FindResultItems()) {
        if (item->matchLine() != nullptr)
            counts.add(*item->matchLine());
    }
    if (!isOfRows && lines > 0)
        counts.add(file.matches()->lines, lines);
    counts.lines = lines;
    counts.shown = file.children().size();
    counts.isOfRows = isOfRows;
    return *_knownCounts.insert(file.identity(), counts);
}

QString ResultsTreeModel::_noteOf(const TDFindResultItem &file) const
{
    const Counts &counts = _counts(file);
    const QLocale locale;
    if (counts.replaced > 0)
        return formatted(localizedString("%@ of %@ replaced"),
                         {locale.toString(counts.replaced), locale.toString(counts.matches)});
    const bool isUsual = file.encoding().source == EncodingSource::Default ||
                         file.encoding().encoding == defaultEncodingIdentifier();
    const bool hasColumn = UserDefaults::standard().boolForKey(TD_USER_DEFAULTS_NAME_SHOW_ENCODINGS);
    return isUsual || hasColumn ? QString() : encodingText(file.encoding());
}

QVariant ResultsTreeModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return {};
    const auto *node = static_cast<TDFindResultItem *>(index.internalPointer());
    if (role == Qt::DisplayRole)
        return _displayText(*node, index.column());
    if (node->parent() == nullptr)
        return _fileData(*node, index.column(), role);
    if (role == Qt::ToolTipRole && node->error())
        return plainToolTip(reasonWithSystemText(node->error()));
    if (role == Qt::AccessibleTextRole)
        return _spokenLine(*node);
    return {};
}

QString ResultsTreeModel::_spokenLine(const TDFindResultItem &leaf)
{
    if (leaf.matchLine() == nullptr)
        return formatted(localizedString("Error: %@"), {reasonWithSystemText(leaf.error())});
    const TDMatchLine &line = *leaf.matchLine();
    const QString text = line.matchLineString();
    const TextRange body = rangeWithoutNewlinesAtEnds(text);
    const QString shown = text.mid(body.location, body.length);
    const quint64 number = line.lineNumber();
    const qint64 highlighted = line.highlightedMatchIndex();
    if (highlighted == TD_NO_HIGHLIGHTED_MATCH)
        return formatted(localizedString("line %lu, %@: %@"),
                         {number, spokenMatches(line.numberOfMatches()), shown});
    return formatted(localizedString("line %lu, match %lu of %lu: %@"),
                     {number, quint64(highlighted + 1), line.numberOfMatches(), shown});
}

QString ResultsTreeModel::_spokenFile(const TDFindResultItem &file) const
{
    const std::optional<qint32> count = _matchCount(file);
    const QString name = file.filenameMatchLineSortKey();
    if (!count)
        return formatted(localizedString("%@, couldn’t be searched"), {name});
    QString spoken = formatted(localizedString("%@, %@"), {name, spokenMatches(quint64(*count))});
    if (const QString note = _noteOf(file); !note.isEmpty())
        spoken += QStringLiteral(", ") + note;
    return file.remark().isEmpty() ? spoken : spoken + QStringLiteral(". ") + file.remark();
}

QString ResultsTreeModel::_displayText(const TDFindResultItem &item, int column) const
{
    if (column == NameColumn)
        return displayFilenameOrMatchLine(item, false).text;
    if (item.parent() != nullptr)
        return {};
    if (column == FolderColumn)
        return item.remark().isEmpty() ? folderForPeople(item.displayPath()) : item.remark();
    if (column == EncodingColumn)
        return encodingText(item.encoding());
    const std::optional<qint32> count = _matchCount(item);
    return count ? grouped(quint64(*count)) : QString();
}

QIcon ResultsTreeModel::_iconOf(const TDFindResultItem &file)
{
    // A file that couldn't be searched is told from the others also while its row is closed.
    const bool hasFailed = !file.children().isEmpty() && file.children().first()->error();
    return hasFailed || !file.remark().isEmpty() ? warningIcon()
                                                 : iconForFileName(file.filenameMatchLineSortKey());
}

QString ResultsTreeModel::_tipOf(const TDFindResultItem &file)
{
    QStringList lines = {file.path().displayText()};
    if (const QString encoding = encodingText(file.encoding()); !encoding.isEmpty())
        lines << formatted(localizedString("Encoding: %@"), {encoding});
    if (!file.remark().isEmpty())
        lines << file.remark();
    return lines.join(u'\n');
}

QVariant ResultsTreeModel::_fileData(const TDFindResultItem &file, int column, int role) const
{
    switch (role) {
    case Qt::ToolTipRole:
        return plainToolTip(_tipOf(file));
    case NoteRole:
        return column == NameColumn ? QVariant(_noteOf(file)) : QVariant();
    case Qt::ForegroundRole:
        return column == FolderColumn && !file.remark().isEmpty()
                   ? QVariant(errorColor(QGuiApplication::palette()))
                   : QVariant();
    case Qt::AccessibleTextRole:
        return _spokenFile(file);
    case Qt::AccessibleDescriptionRole:
        return folderForPeople(file.displayPath());
    case Qt::DecorationRole:
        return column == NameColumn ? QVariant(_iconOf(file)) : QVariant();
    case Qt::FontRole: {
        QFont font;
        font.setBold(true);
        return column == FolderColumn || column == EncodingColumn ? QVariant() : QVariant(font);
    }
    case Qt::TextAlignmentRole:
        return int((column == MatchesColumn ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
    default:
        return {};
    }
}

QVariant ResultsTreeModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal)
        return {};
    if (role == Qt::TextAlignmentRole)
        return int((section == FolderColumn ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
    if (role != Qt::DisplayRole)
        return {};
    switch (section) {
    case NameColumn:
        return localizedString("Name");
    case MatchesColumn:
        return localizedString("Matches");
    case FolderColumn:
        return localizedString("Folder");
    case EncodingColumn:
        return localizedString("Encoding");
    default:
        return {};
    }
}

} // namespace tidemark
