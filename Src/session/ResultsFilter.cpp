#include "session/ResultsFilter.h"

#include "foundation/WorkerThreads.h"
#include "text/AsciiText.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace tidemark {

namespace {

// Cases of ASCII letters beyond ASCII, in UTF-8.
constexpr std::array LONG_S = {'\xC5', '\xBF'};
constexpr std::array KELVIN_SIGN = {'\xE2', '\x84', '\xAA'};

/// So many take about a millisecond.
constexpr qsizetype LINES_IN_PIECE = 1 << 14;

QByteArray withSlash(const FilePath &folder)
{
    return folder.bytes().endsWith('/') ? folder.bytes() : folder.bytes() + '/';
}

qsizetype numberOfLines(const QList<FileWithLines> &files)
{
    qsizetype count = 0;
    for (const FileWithLines &file : files)
        count += file.lines.size();
    return count;
}

} // namespace

ResultsFilter::ResultsFilter(const QString &text, const QList<FilePath> &locations) : _text(text)
{
    for (const FilePath &location : locations)
        _folders << withSlash(location);
    std::sort(_folders.begin(), _folders.end(),
              [](const QByteArray &left, const QByteArray &right) { return left.size() > right.size(); });
    if (!isAscii(QStringView(text)))
        return;
    _finder.emplace(text.toLatin1());
    _hasFurtherCases = text.contains(u'k', Qt::CaseInsensitive) || text.contains(u's', Qt::CaseInsensitive);
}

/// Neighbouring lines of one file.
struct ResultsFilter::Piece
{
    struct Run
    {
        qsizetype first;
        qsizetype end;
    };

    const FileWithLines *of;
    qsizetype first;
    qsizetype end;
    std::vector<Run> shown = {};
};

std::vector<ResultsFilter::Piece> ResultsFilter::_piecesOf(const QList<FileWithLines> &files)
{
    std::vector<Piece> pieces;
    pieces.reserve(size_t(files.size()));
    for (const FileWithLines &file : files) {
        qsizetype first = 0;
        for (; file.lines.size() - first > LINES_IN_PIECE; first += LINES_IN_PIECE)
            pieces.push_back({&file, first, first + LINES_IN_PIECE});
        pieces.push_back({&file, first, file.lines.size()});
    }
    return pieces;
}

void ResultsFilter::_lookAt(Piece &piece) const
{
    const bool isInPath = _isInPath(piece.of->file->path());
    for (qsizetype index = piece.first; index < piece.end; ++index) {
        if (!isInPath && !_isInLine(*piece.of->lines[index]))
            continue;
        if (piece.shown.empty() || piece.shown.back().end != index)
            piece.shown.push_back({index, index});
        piece.shown.back().end = index + 1;
    }
}

ShownLines ResultsFilter::shownLines(const QList<FileWithLines> &files) const
{
    const int threads = numberOfLines(files) > LINES_IN_PIECE ? processorCount() : 1;
    std::vector<Piece> pieces = _piecesOf(files);
    doInParallel(threads, pieces.size(), [&](size_t index) { _lookAt(pieces[index]); });
    std::vector<std::span<const Piece>> piecesOfFiles;
    auto rest = std::span<const Piece>(pieces);
    for (const FileWithLines &file : files) {
        const auto end =
            std::find_if(rest.begin(), rest.end(), [&](const Piece &piece) { return piece.of != &file; });
        piecesOfFiles.push_back(rest.first(size_t(end - rest.begin())));
        rest = rest.subspan(piecesOfFiles.back().size());
    }
    ShownLines shown(piecesOfFiles.size());
    doInParallel(threads, shown.size(), [&](size_t index) { shown[index] = _shownOf(piecesOfFiles[index]); });
    return shown;
}

/// What the pieces of one file make together.
std::optional<FindResultItems> ResultsFilter::_shownOf(std::span<const Piece> pieces)
{
    const FindResultItems &lines = pieces.front().of->lines;
    qsizetype count = 0;
    for (const Piece &piece : pieces) {
        for (const Piece::Run &run : piece.shown)
            count += run.end - run.first;
    }
    if (count == lines.size())
        return {};
    FindResultItems shown;
    shown.reserve(count);
    for (const Piece &piece : pieces) {
        for (const Piece::Run &run : piece.shown)
            std::copy(lines.begin() + run.first, lines.begin() + run.end, std::back_inserter(shown));
    }
    return shown;
}

bool ResultsFilter::_isInPath(const FilePath &path) const
{
    const QByteArray &bytes = path.bytes();
    const auto folder = std::find_if(_folders.begin(), _folders.end(), [&bytes](const QByteArray &location) {
        return bytes.startsWith(location);
    });
    return _isIn(folder != _folders.end() ? bytes.sliced(folder->size()) : path.lastPathComponent());
}

bool ResultsFilter::_isInLine(const TDFindResultItem &line) const
{
    if (line.matchLine() == nullptr)
        return line.error().localizedFailureReason().contains(_text, Qt::CaseInsensitive);
    const QByteArrayView utf8 = line.matchLine()->unchangedUtf8();
    return utf8.isNull() ? line.matchLine()->matchLineString().contains(_text, Qt::CaseInsensitive)
                         : _isIn(utf8);
}

bool ResultsFilter::_isIn(QByteArrayView utf8) const
{
    if (_finder && _finder->isIn(utf8))
        return true;
    if (_finder && !(_hasFurtherCases && (utf8.contains(LONG_S) || utf8.contains(KELVIN_SIGN))))
        return false;
    return QString::fromUtf8(utf8).contains(_text, Qt::CaseInsensitive);
}

} // namespace tidemark
