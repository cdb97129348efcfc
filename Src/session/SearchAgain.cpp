#include "session/SearchAgain.h"

#include <utility>

namespace tidemark {

SearchAgain::SearchAgain(QObject *context, FindResultItems files, StringEncoding encoding,
                         std::function<void()> ended)
    : _files(std::move(files)), _encoding(encoding), _ended(std::move(ended)), _context(context)
{}

void SearchAgain::search(TDSearchEngine &engine, const SearchTerms &terms)
{
    QList<TDSearchLocation> locations;
    QHash<FilePath, StringEncoding> encodings;
    for (const auto &file : _files) {
        locations.emplaceBack().url = file->path().toUrl();
        encodings.insert(file->path(), _encoding);
    }
    engine.setFindOptions(terms.options);
    engine.setChosenEncodings(encodings);
    engine.startSearch(terms.findText, locations, terms.options.caseRule == CaseRule::Exact);
}

QHash<FilePath, std::shared_ptr<TDFindResultItem>> SearchAgain::taken()
{
    const std::lock_guard lock(_mutex);
    _context = nullptr;
    return std::exchange(_done, {});
}

void SearchAgain::_finishFile()
{
    if (_path)
        _done.insert(*_path, std::exchange(_found, nullptr));
    _path.reset();
}

void SearchAgain::didFindFile(const FilePath &path, quint64, quint64, quint64)
{
    const std::lock_guard lock(_mutex);
    _finishFile();
    _path = path;
}

void SearchAgain::didFindMatchInFile(const std::shared_ptr<TDFindResultItem> &file)
{
    const std::lock_guard lock(_mutex);
    _found = file;
}

void SearchAgain::didFinishSearch(quint64, quint64, quint64)
{
    const std::lock_guard lock(_mutex);
    _finishFile();
    _end();
}

void SearchAgain::didStopSearch(quint64, quint64, quint64)
{
    const std::lock_guard lock(_mutex);
    _end();
}

void SearchAgain::_end()
{
    if (_context == nullptr)
        return;
    QMetaObject::invokeMethod(
        _context,
        [self = shared_from_this()] {
            // Only this thread takes, so nothing needs to be locked here.
            if (self->_context != nullptr)
                self->_ended();
        },
        Qt::QueuedConnection);
}

} // namespace tidemark
