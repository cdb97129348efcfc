#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <limits>

namespace tidemark {

/// A number as bytes of seven bits each, the lowest first: short for small ones.
inline void putNumber(QByteArray &bytes, quint64 number)
{
    for (; number >= 0x80; number >>= 7)
        bytes += char(number | 0x80);
    bytes += char(number);
}

/// With its length in front.
inline void putBytes(QByteArray &bytes, QByteArrayView field)
{
    putNumber(bytes, quint64(field.size()));
    bytes += field;
}

/// Of a fixed width, for what looks like chance.
inline void putHash(QByteArray &bytes, quint64 hash)
{
    for (int shift = 0; shift < 64; shift += 8)
        bytes += char(hash >> shift);
}

/// Takes one field after the other from bytes of any origin. What isn't there reads as 0 or empty, and so
/// does everything behind it; isValid() tells at the end.
class FieldReader
{
public:
    explicit FieldReader(QByteArrayView bytes) : _rest(bytes) {}

    bool isValid() const { return _isValid; }
    bool isAtEnd() const { return _rest.isEmpty(); }
    QByteArrayView rest() const { return _rest; }

    quint64 number()
    {
        quint64 number = 0;
        for (int shift = 0; shift < 64; shift += 7) {
            const quint8 byte = quint8(_take(1).isEmpty() ? 0 : _taken.front());
            number |= quint64(byte & 0x7F) << shift;
            if ((byte & 0x80) == 0)
                return number;
        }
        return _fail(), 0;
    }
    /// Never negative.
    qint64 size() { return _atMost(std::numeric_limits<qint64>::max()); }
    /// Of files or matches: so small that millions of them can be added up.
    qint64 count() { return _atMost(qint64(1) << 40); }
    QByteArrayView bytes() { return bytes(size()); }
    QByteArrayView bytes(qint64 count) { return _take(count); }
    quint64 hash()
    {
        quint64 hash = 0;
        int shift = 0;
        for (const char byte : _take(8)) {
            hash |= quint64(quint8(byte)) << shift;
            shift += 8;
        }
        return hash;
    }

private:
    qint64 _atMost(qint64 most)
    {
        const quint64 value = number();
        return value <= quint64(most) ? qint64(value) : (_fail(), 0);
    }
    QByteArrayView _take(qint64 count)
    {
        if (count > _rest.size())
            _fail();
        _taken = _isValid ? _rest.first(count) : QByteArrayView();
        _rest = _rest.sliced(_taken.size());
        return _taken;
    }
    void _fail()
    {
        _isValid = false;
        _rest = {};
    }

    QByteArrayView _rest;
    QByteArrayView _taken;
    bool _isValid = true;
};

} // namespace tidemark
