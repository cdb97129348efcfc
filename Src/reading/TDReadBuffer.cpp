#include "reading/TDReadBuffer.h"

#include "foundation/AssertionHandler.h"
#include "foundation/FileSystemCalls.h"
#include "foundation/LocalizedText.h"

#include <algorithm>
#include <cerrno>
#include <unistd.h>
#include <utility>

namespace tidemark {

TDReadBuffer::TDReadBuffer(Descriptor descriptor, qint64 mostBytes)
    : _descriptor(std::move(descriptor)), _block(std::make_unique_for_overwrite<char[]>(BLOCK_SIZE)),
      _data(_block.get()), _bytesLeft(mostBytes)
{}

TDReadBuffer::TDReadBuffer(Descriptor descriptor, QByteArrayView content)
    : _descriptor(std::move(descriptor)), _data(content.data()), _size(content.size()), _bytesLeft(0),
      _endOfFile(true)
{}

TDReadBuffer::~TDReadBuffer()
{
    if (_descriptor.isOpen())
        reportAssertion({"TDReadBuffer::~TDReadBuffer()", "Src/TDFileReader", 282,
                         "File descriptor not closed with close(...)"});
    // Nobody closes it then: who forgot to may have it in use.
    (void)_descriptor.release();
}

bool TDReadBuffer::read(char &byte, TDError &error)
{
    const QByteArrayView bytes = available(error);
    if (bytes.isEmpty())
        return false;
    byte = bytes.front();
    consume(1);
    return true;
}

QByteArrayView TDReadBuffer::available(TDError &error)
{
    error.clear();
    if (!_pushedBack.empty())
        return QByteArrayView(&_pushedBack.back(), 1);
    while (_position == _size) {
        if (_endOfFile)
            return {};
        unbufferedRead(error);
        if (error)
            return {};
        _position = 0;
    }
    return QByteArrayView(_data + _position, _size - _position);
}

QByteArrayView TDReadBuffer::atHand() const
{
    return _pushedBack.empty() ? QByteArrayView(_data + _position, _size - _position) : QByteArrayView();
}

void TDReadBuffer::consume(qsizetype count)
{
    if (_pushedBack.empty())
        _position += count;
    else
        _pushedBack.resize(_pushedBack.size() - size_t(count));
}

void TDReadBuffer::pushBack(char byte)
{
    // Giving back what was just taken from the block is a step backwards in it.
    if (_pushedBack.empty() && _position > 0 && _data[_position - 1] == byte)
        --_position;
    else
        _pushedBack.push_back(byte);
}

void TDReadBuffer::unbufferedRead(TDError &error)
{
    error.clear();
    const ssize_t count =
        FileSystemCalls::current().read(_descriptor.number(), _block.get(), size_t(BLOCK_SIZE));
    if (count == -1) {
        error = TDError::posixError(errno);
        return;
    }
    _size = std::min<qint64>(count, _bytesLeft);
    _bytesLeft -= _size;
    if (_size < BLOCK_SIZE || _bytesLeft == 0)
        _endOfFile = true;
}

bool TDReadBuffer::close(TDError &error, const FilePath &path)
{
    error.clear();
    if (!_descriptor.isOpen())
        return true;
    const int number = _descriptor.release();
    if (::close(number) == 0)
        return true;
    const int failure = errno;
    // What couldn't be closed is reported again when the buffer goes.
    _descriptor = Descriptor(number);
    error = TDError::posixError(
        failure, path,
        formatted(localizedString("An error occurred while closing ‘%@’."), {path.displayText()}));
    return false;
}

} // namespace tidemark
