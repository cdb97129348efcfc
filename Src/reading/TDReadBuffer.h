#pragma once

#include "foundation/Descriptor.h"
#include "foundation/FilePath.h"
#include "foundation/TDError.h"

#include <QByteArrayView>

#include <limits>
#include <memory>
#include <vector>

namespace tidemark {

/// Reads an open descriptor in blocks and hands the bytes out, one by one or a stretch at a time; bytes can
/// be pushed back. The only place where a file being read is read or closed. It must be closed with close()
/// before the buffer is destroyed, so that a failure can be told.
class TDReadBuffer
{
public:
    /// Bytes asked for by one read; fewer returned mean the end of the file.
    static constexpr qsizetype BLOCK_SIZE = 40960;

    /// Of a file that others go on writing to, what lies behind the first `mostBytes` isn't read: it might
    /// never end.
    explicit TDReadBuffer(Descriptor descriptor, qint64 mostBytes = std::numeric_limits<qint64>::max());
    /// Hands out what was read of the descriptor already, and doesn't read it. The bytes must stay as long as
    /// the buffer.
    TDReadBuffer(Descriptor descriptor, QByteArrayView content);
    ~TDReadBuffer();
    TDReadBuffer(const TDReadBuffer &) = delete;
    TDReadBuffer &operator=(const TDReadBuffer &) = delete;

    /// The next byte; false at the end of the file (no error) or on a failure (error set).
    bool read(char &byte, TDError &error);

    /// The bytes at hand, at least one, without taking them: empty at the end of the file (no error) or on a
    /// failure (error set). Valid until the next call of any other member but consume().
    QByteArrayView available(TDError &error);
    /// The same without reading anything: may be empty anywhere.
    QByteArrayView atHand() const;
    /// Takes the first `count` bytes of what available() or atHand() returned last.
    void consume(qsizetype count);

    /// The byte will be the next one handed out; of several, the one pushed back last comes first.
    void pushBack(char byte);

    /// Reads the next block over the one at hand.
    void unbufferedRead(TDError &error);

    /// `path` is for the error's text. True when it is closed, also when it already was.
    bool close(TDError &error, const FilePath &path);

    /// -1 once it is closed.
    int descriptor() const { return _descriptor.number(); }

private:
    Descriptor _descriptor;
    std::unique_ptr<char[]> _block;
    const char *_data = nullptr; ///< the block, or another's bytes
    qsizetype _size = 0;         ///< bytes in _data
    qsizetype _position = 0;     ///< the next byte of _data to hand out
    std::vector<char> _pushedBack;
    qint64 _bytesLeft; ///< that may still be read
    bool _endOfFile = false;
};

} // namespace tidemark
