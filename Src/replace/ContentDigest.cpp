#include "replace/ContentDigest.h"

#include <xxhash.h>

// Uses the vector instructions that this processor has beyond those that all have.
#if defined(__x86_64__) && __has_include(<xxh_x86dispatch.h>)
#include <xxh_x86dispatch.h>
#endif

namespace tidemark {

ContentHasher::ContentHasher() : _state(XXH3_createState())
{
    Q_CHECK_PTR(_state);
    (void)XXH3_64bits_reset(_state);
}

ContentHasher::~ContentHasher()
{
    (void)XXH3_freeState(_state);
}

void ContentHasher::add(QByteArrayView bytes)
{
    (void)XXH3_64bits_update(_state, bytes.data(), size_t(bytes.size()));
    _size += bytes.size();
}

ContentDigest ContentHasher::digest() const
{
    return {_size, XXH3_64bits_digest(_state)};
}

ContentDigest digestOfBytes(QByteArrayView bytes)
{
    return {bytes.size(), XXH3_64bits(bytes.data(), size_t(bytes.size()))};
}

} // namespace tidemark
