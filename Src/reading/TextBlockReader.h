#pragma once

#include "foundation/Descriptor.h"
#include "foundation/ExtendedAttributes.h"
#include "foundation/TDFileCommon.h"
#include "reading/BlockDecoder.h"
#include "reading/EncodingDetection.h"
#include "reading/FileToRead.h"
#include "text/TextEncoding.h"

#include <QByteArrayView>

#include <cstdlib>
#include <memory>
#include <optional>

namespace tidemark {

/// Reads files as blocks of whole lines in UTF-8, for searching them fast. It knows its limits: for
/// everything that is out of the ordinary it sends the caller to the line reader, whose lines, errors and
/// quirks are the measure; what it does deliver is exactly the text of the line reader's lines, one after the
/// other. One object reads any number of files, one at a time, and keeps its buffers. Not to be shared
/// between threads.
class TextBlockReader
{
public:
    enum class Outcome {
        Block,
        EndOfFile,
        /// The file can't be opened or read, holds bytes that its encoding doesn't allow, is shorter than a
        /// byte-order mark can be, or its encoding can only be decoded line by line.
        NeedsLineReader,
    };

    /// Memory that grows in place where it can.
    class Buffer
    {
    public:
        char *data() const { return _memory.get(); }
        qsizetype capacity() const { return _capacity; }
        /// Keeps what is in it as far as there is room. Throws std::bad_alloc.
        void setCapacity(qsizetype capacity);

    private:
        struct Free
        {
            void operator()(char *memory) const { std::free(memory); }
        };
        std::unique_ptr<char, Free> _memory;
        qsizetype _capacity = 0;
    };

    TextBlockReader();
    TextBlockReader(const TextBlockReader &) = delete;
    TextBlockReader &operator=(const TextBlockReader &) = delete;

    /// Closes the file before and opens this one; the encoding as for the line reader. At the end of the file
    /// at once if its gate doesn't admit it.
    Outcome open(const FileToRead &file, StringEncoding encoding);
    /// The next lines, valid until the next call. Each block but the last of a file ends with a line end.
    Outcome nextBlock(QByteArrayView &block);
    /// The next lines in the file's own encoding, for a BlockDecoder of another thread. They lie in `buffer`,
    /// whose memory the reader takes for what it reads next.
    Outcome takeBytes(Buffer &buffer, QByteArrayView &bytes);
    void close();

    /// True when the block delivered last was the last of the file.
    bool isAtEnd() const { return _endOfFile && _start == _end; }

    /// For a file about which there is something to tell: makes sure that its date is known. False for one
    /// that was read unasked and may have been changed since: it has to be opened anew, its status first.
    bool settleDate();

    /// Of the file opened last: its date before it was read, once it is settled, its encoding, whose source
    /// is the default for one that was given, and whether it began with a mark.
    std::optional<FileDate> modificationDate() const { return _modificationDate; }
    SettledEncoding encoding() const { return {_encoding, _encodingSource}; }
    bool hadByteOrderMarker() const { return _hadByteOrderMarker; }

private:
    bool _readUnasked(const FileToRead &file);
    Outcome _askStatus(const FileToRead &file);
    bool _fill();
    bool _settleEncoding(StringEncoding encoding);
    Outcome _nextLines(QByteArrayView &bytes);
    qsizetype _lengthOfWholeLines() const;
    qsizetype _lengthOfWholeLinesOfUnits(QByteArrayView bytes) const;

    /// Most files fit, so that one read tells their end too.
    static constexpr qsizetype FIRST_CAPACITY = 1 << 17;

    Descriptor _descriptor;
    Buffer _buffer;
    qsizetype _start = 0; ///< of what hasn't been handed out yet, in _buffer
    qsizetype _end = 0;
    qsizetype _withoutLineEnd = 0; ///< so many bytes from _start on have been looked through in vain
    qint64 _bytesLeft = 0;         ///< that may still be read
    bool _endOfFile = false;
    bool _hadByteOrderMarker = false;
    std::optional<FileDate> _modificationDate;
    std::optional<FileDate> _readUnaskedAt; ///< by the clock of file systems
    dev_t _device = 0;
    UserAttributes _attributes;
    StringEncoding _encoding = 0;
    EncodingSource _encodingSource = EncodingSource::Default;
    BlockDecoder _decoder;
};

} // namespace tidemark
