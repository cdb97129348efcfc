#pragma once

#include <QByteArrayView>

struct XXH3_state_s;

namespace tidemark {

/// Tells contents apart: their size in bytes and a 64-bit hash, which nobody is kept from forging.
struct ContentDigest
{
    qint64 size = 0;
    quint64 hash = 0;

    friend bool operator==(const ContentDigest &, const ContentDigest &) = default;
};

/// Takes a content piece by piece.
class ContentHasher
{
public:
    ContentHasher();
    ~ContentHasher();
    ContentHasher(const ContentHasher &) = delete;
    ContentHasher &operator=(const ContentHasher &) = delete;

    void add(QByteArrayView bytes);
    ContentDigest digest() const;

private:
    XXH3_state_s *_state; ///< owned
    qint64 _size = 0;
};

ContentDigest digestOfBytes(QByteArrayView bytes);

} // namespace tidemark
