#include "session/EncodingSampler.h"

#include "foundation/StopFlag.h"
#include "reading/TDFileReader.h"
#include "text/ByteScan.h"
#include "text/LikelyEncodings.h"

#include <algorithm>
#include <limits>

namespace tidemark {

namespace {

/// As much as the detection looks at.
constexpr qsizetype ENOUGH_BYTES = 1 << 13;
constexpr qsizetype LONGEST_SAMPLE = 1 << 20;
/// Behind the first line that is no text.
constexpr qint64 LINES_LOOKED_AT = 20000;

/// What is no text, and lines like it: what is ASCII tells nothing.
void takeSample(TDFileReader &reader, EncodingSample &sample, QByteArray &bytes)
{
    TDError error;
    qint64 number = 0;
    qint64 lastNumber = std::numeric_limits<qint64>::max();
    while (number < lastNumber && bytes.size() < ENOUGH_BYTES) {
        checkForStop();
        if (sample.lineNumber == 0)
            number += reader.passAsciiLines(std::numeric_limits<qint64>::max()).count;
        const std::optional<LineBytes> line = reader.nextLineBytes(error);
        if (!line)
            return;
        ++number;
        TDError lineError;
        if (sample.lineNumber == 0 && !reader.decode(line->bytes, lineError)) {
            sample.lineNumber = number;
            lastNumber = number + LINES_LOOKED_AT;
        }
        if (sample.lineNumber > 0 && !isAscii(line->bytes))
            bytes += line->bytes.first(std::min(line->bytes.size(), LONGEST_SAMPLE));
    }
}

EncodingSample sampleOf(const FilePath &path, StringEncoding encoding, const std::atomic<bool> &isStopped)
{
    EncodingSample sample;
    TDError error;
    const auto reader = TDFileReader::fileReaderWithFile(path, encoding, error);
    if (!reader)
        return sample;
    QByteArray bytes;
    const StopScope scope(&isStopped, nullptr);
    try {
        takeSample(*reader, sample, bytes);
        sample.likely = likelyEncodings(bytes);
    } catch (const WorkStopped &) {
        // Nobody waits for it any more.
    }
    (void)reader->closeFile(error);
    return sample;
}

} // namespace

EncodingSampler::~EncodingSampler()
{
    _isStopped = true;
}

void EncodingSampler::start(const FilePath &path, StringEncoding encoding)
{
    _worker.start([this, path, encoding] {
        const EncodingSample sample = sampleOf(path, encoding, _isStopped);
        QMetaObject::invokeMethod(
            this, [this, sample] { Q_EMIT sampled(sample); }, Qt::QueuedConnection);
    });
}

} // namespace tidemark
