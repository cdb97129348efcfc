#pragma once

#include "text/TextEncoding.h"

#include <QByteArray>
#include <QByteArrayView>

#include <memory>

namespace tidemark {

/// Makes UTF-8 of blocks of whole lines in one encoding. Keeps its converter as long as the encoding stays
/// the same. One thread at a time.
class BlockDecoder
{
public:
    /// False, with nothing that could be decoded, for one that can only be decoded line by line.
    bool setEncoding(StringEncoding encoding);

    /// Of the encoding, in bytes.
    int unitSize() const { return _unitSize; }
    /// For units of several bytes.
    bool isLittleEndian() const;

    /// False when the encoding doesn't allow the bytes. `block` is valid until the next call, and as long as
    /// the bytes.
    bool toUtf8(QByteArrayView bytes, QByteArrayView &block);
    /// Lets go of memory that a large block needed.
    void shrink();

private:
    bool _convert(QByteArrayView bytes);

    StringEncoding _encoding = 0;
    std::unique_ptr<TextConverter> _converter; ///< null for UTF-8
    int _unitSize = 1;
    QByteArray _converted;
};

} // namespace tidemark
