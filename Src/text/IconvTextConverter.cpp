#include "text/IconvTextConverter.h"

#include "foundation/StopFlag.h"
#include "text/TextEncodingTable.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <iconv.h>
#include <unordered_map>

namespace tidemark {

namespace {

constexpr const char *HOST_UTF16 = Q_BYTE_ORDER == Q_LITTLE_ENDIAN ? "UTF-16LE" : "UTF-16BE";
constexpr qsizetype LEAST_ROOM = 64;
constexpr qsizetype ROOM_BETWEEN_STOP_CHECKS = WORK_BETWEEN_STOP_CHECKS / 16;

/// A converter of the library, for one direction.
class OpenIconv
{
public:
    OpenIconv(const char *to, const char *from) : _iconv(iconv_open(to, from)) {}
    ~OpenIconv()
    {
        if (isOpen())
            (void)iconv_close(_iconv);
    }
    OpenIconv(const OpenIconv &) = delete;
    OpenIconv &operator=(const OpenIconv &) = delete;

    bool isOpen() const { return _iconv != iconv_t(-1); }

    /// Converts a whole text. Nothing when it is truncated, or has a character with no exact counterpart.
    std::optional<QByteArray> converted(QByteArrayView bytes)
    {
        (void)iconv(_iconv, nullptr, nullptr, nullptr, nullptr);
        _converted.resize(0);
        char *source = const_cast<char *>(bytes.data());
        size_t left = size_t(bytes.size());
        if (!_convert(&source, &left) || left > 0 || !_convert(nullptr, nullptr))
            return std::nullopt;
        return _converted;
    }

private:
    /// Without a source: puts out what is still held back and returns to the initial state.
    bool _convert(char **source, size_t *left)
    {
        for (;;) {
            const qsizetype done = _converted.size();
            const qsizetype room =
                qMin(LEAST_ROOM + (left != nullptr ? qsizetype(*left) * 2 : 0), ROOM_BETWEEN_STOP_CHECKS);
            _converted.resize(done + room);
            char *target = _converted.data() + done;
            size_t targetLeft = size_t(room);
            const size_t inexact = iconv(_iconv, source, left, &target, &targetLeft);
            const bool isFull = inexact == size_t(-1) && errno == E2BIG;
            _converted.truncate(target - _converted.constData());
            if (!isFull)
                return inexact == 0;
            checkForStop();
        }
    }

    iconv_t _iconv;
    QByteArray _converted;
};

struct BothWays
{
    OpenIconv decoding;
    OpenIconv encoding;

    explicit BothWays(const char *name) : decoding(HOST_UTF16, name), encoding(name, HOST_UTF16) {}
};

BothWays &threadConverters(const char *name)
{
    thread_local std::unordered_map<const char *, BothWays> converters;
    return converters.try_emplace(name, name).first->second;
}

} // namespace

struct IconvTextConverter::Source
{
    CoreFoundationEncoding encoding;
    const char *name;
    bool hasSingleBytes;
};

const IconvTextConverter::Source *IconvTextConverter::_sourceOf(StringEncoding encoding)
{
    static constexpr std::array SOURCES = {
        Source{CF_ENCODING_ISO_8859_BASE + 16, "ISO-8859-16", true},
        Source{CF_ENCODING_VISCII, "VISCII", true},
        Source{CF_ENCODING_ISO_2022_JP_3, "ISO-2022-JP-3", false},
    };
    const auto *found =
        std::ranges::find(SOURCES, convertStringEncodingToCoreFoundation(encoding), &Source::encoding);
    return found == SOURCES.end() ? nullptr : found;
}

std::unique_ptr<IconvTextConverter> IconvTextConverter::converter(StringEncoding encoding)
{
    const Source *source = _sourceOf(encoding);
    if (!source)
        return nullptr;
    const BothWays &converters = threadConverters(source->name);
    if (!converters.decoding.isOpen() || !converters.encoding.isOpen())
        return nullptr;
    return std::unique_ptr<IconvTextConverter>(new IconvTextConverter(encoding, *source));
}

bool IconvTextConverter::hasSingleBytes() const
{
    return _source.hasSingleBytes;
}

std::optional<QString> IconvTextConverter::decode(QByteArrayView bytes)
{
    const std::optional<QByteArray> units = threadConverters(_source.name).decoding.converted(bytes);
    if (!units)
        return std::nullopt;
    return QString(reinterpret_cast<const QChar *>(units->constData()), units->size() / 2);
}

std::optional<QByteArray> IconvTextConverter::encode(QStringView text)
{
    const QByteArrayView units(reinterpret_cast<const char *>(text.utf16()), text.size() * 2);
    std::optional<QByteArray> bytes = threadConverters(_source.name).encoding.converted(units);
    // What the library drops without a word, such as tags, must not be lost.
    if (bytes && decode(*bytes) != text)
        bytes.reset();
    return bytes;
}

} // namespace tidemark
