#include "foundation/Descriptor.h"

#include "foundation/FileSystemCalls.h"

#include <cerrno>

namespace tidemark {

Descriptor &Descriptor::operator=(Descriptor &&other) noexcept
{
    Descriptor closed(std::exchange(_number, other.release()));
    return *this;
}

Descriptor::~Descriptor()
{
    const int errorNumber = errno;
    (void)close();
    errno = errorNumber;
}

int Descriptor::close()
{
    const int closed = release();
    return closed < 0 || FileSystemCalls::current().close(closed) == 0 ? 0 : errno;
}

} // namespace tidemark
