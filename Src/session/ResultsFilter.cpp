#include "session/ResultsFilter.h"

#include "text/AsciiText.h"

#include <algorithm>
#include <array>

namespace tidemark {

namespace {

// Cases of ASCII letters beyond ASCII, in UTF-8.
constexpr std::array LONG_S = {'\xC5', '\xBF'};
constexpr std::array KELVIN_SIGN = {'\xE2', '\x84', '\xAA'};

QByteArray withSlash(const FilePath &folder)
{
    return folder.bytes().endsWith('/') ? folder.bytes() : folder.bytes() + '/';
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

std::optional<FindResultItems> ResultsFilter::shownLines(const TDFindResultItem &file,
                                                         const FindResultItems &lines) const
{
    if (_isInPath(file.path()))
        return {};
    FindResultItems shown;
    for (const auto &line : lines) {
        if (_isInLine(*line))
            shown << line;
    }
    return shown.size() == lines.size() ? std::nullopt : std::optional(shown);
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
