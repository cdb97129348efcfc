#include "search/EntryFilter.h"

#include "foundation/BackupName.h"
#include "foundation/UserDefaults.h"
#include "search/FileNameCase.h"

#include <algorithm>

namespace tidemark {

EntryFilterOptions EntryFilterOptions::withUserDefaults()
{
    const UserDefaults &settings = UserDefaults::standard();
    return {settings.stringForKey(TD_USER_DEFAULTS_NAME_LEAVE_OUT_PATTERNS),
            settings.boolForKey(TD_USER_DEFAULTS_NAME_SEARCH_HIDDEN_FILES),
            settings.boolForKey(TD_USER_DEFAULTS_NAME_OBEY_IGNORE_FILES),
            std::max<qint64>(0, settings.integerForKey(TD_USER_DEFAULTS_NAME_LARGEST_FILE_SIZE))};
}

EntryFilter::EntryFilter(const EntryFilterOptions &options) : _options(options)
{
    if (options.obeysIgnoreFiles)
        _rules.emplace();
    _preparePatterns(CaseRule::Exact);
    _followsPaths = _rules || !_patterns->isEmpty();
}

void EntryFilter::_preparePatterns(CaseRule caseRule)
{
    if (_patterns && _caseRule == caseRule)
        return;
    _caseRule = caseRule;
    _patterns = IgnorePatterns::ofField(_options.leaveOutPatterns, caseRule);
    _countsOfPatterns.resize(_patterns->all().size());
}

void EntryFilter::enterLocation(const OpenFolders &folders)
{
    _countSkipped(folders.listing());
    if (!_followsPaths)
        return;
    const QByteArray path = folders.path();
    _preparePatterns(caseRuleOfNamesIn(folders.descriptor()));
    _subject = _rules ? _rules->enterLocation(path, _caseRule) : QByteArray();
    _belowLocation = _subject.size();
    _locationPathLength = path.size() + (path.endsWith('/') ? 0 : 1);
    _folderLengths.assign(1, _subject.size());
    if (_rules)
        _rules->enterFolder(folders.descriptor(), folders.listing().marks(), _subject.size(), path);
}

void EntryFilter::enterFolder(const OpenFolders &folders)
{
    _countSkipped(folders.listing());
    if (!_followsPaths)
        return;
    const QByteArray path = folders.path();
    _subject.resize(_belowLocation);
    _subject += QByteArrayView(path).sliced(_locationPathLength);
    _subject += '/';
    _folderLengths.push_back(_subject.size());
    if (_rules)
        _rules->enterFolder(folders.descriptor(), folders.listing().marks(), _subject.size(), path);
}

void EntryFilter::leaveFolder()
{
    if (!_followsPaths)
        return;
    _folderLengths.pop_back();
    if (_rules)
        _rules->leaveFolder();
}

void EntryFilter::leaveLocation()
{
    _folderLengths.clear();
    if (_rules)
        _rules->leaveLocation();
}

void EntryFilter::_countSkipped(const FolderListing &listing)
{
    _leftOut[LeftOutReason::Link] += listing.linkCount();
    _leftOut[LeftOutReason::Special] += listing.specialCount();
}

LeftOutReason EntryFilter::_reasonAgainst(const char *name, EntryKind kind)
{
    const QByteArrayView view(name);
    if (name[0] == '.') {
        if (!_options.searchesHiddenFiles)
            return LeftOutReason::Hidden;
        if (_options.obeysIgnoreFiles && view == ".git")
            return LeftOutReason::IgnoreFile;
    }
    // What this program left beside files is no work of anybody's.
    if (isBackupName(view))
        return LeftOutReason::OwnBackup;
    return _followsPaths ? _reasonOfPatterns(view, kind) : LeftOutReason::None;
}

LeftOutReason EntryFilter::_reasonOfPatterns(QByteArrayView name, EntryKind kind)
{
    const bool needsSubject = _patterns->haveOnesForPaths() || (_rules && _rules->needSubjects());
    const QByteArrayView subject = needsSubject ? _subjectOf(name) : QByteArrayView();
    const int match = _patterns->lastMatch(name, needsSubject ? subject.sliced(_belowLocation) : name, kind);
    if (match >= 0) {
        if (_patterns->all()[size_t(match)].takesBack())
            return LeftOutReason::None;
        ++_countsOfPatterns[size_t(match)];
        return LeftOutReason::Pattern;
    }
    return _rules && _rules->leavesOut(name, subject, kind) ? LeftOutReason::IgnoreFile : LeftOutReason::None;
}

/// The bytes of the folder's path may be those of one below it that was left since, which begin the same.
QByteArrayView EntryFilter::_subjectOf(QByteArrayView name)
{
    _subject.resize(_folderLengths.back());
    _subject += name;
    return _subject;
}

LeftOut EntryFilter::leftOut() const
{
    LeftOut result = _leftOut;
    for (size_t index = 0; index < _countsOfPatterns.size(); ++index) {
        if (_countsOfPatterns[index] > 0)
            result.byPattern.append({_patterns->all()[index].text(), _countsOfPatterns[index]});
    }
    if (_rules)
        _rules->report(result);
    return result;
}

} // namespace tidemark
