#pragma once

#include <utility>

namespace tidemark {

/// Owns an open file descriptor, or none. Moving hands it on: what was moved from has none. A lease or a lock
/// that hangs on the descriptor ends when it is closed. One thread at a time.
class Descriptor
{
public:
    Descriptor() = default;
    /// Takes over what a call that opens returned; a negative number is none, whose errno is left alone.
    explicit Descriptor(int number) : _number(number) {}
    Descriptor(Descriptor &&other) noexcept : _number(other.release()) {}
    /// Closes the one it had.
    Descriptor &operator=(Descriptor &&other) noexcept;
    /// Closes it and keeps errno. Where a failure to close matters, close() comes first.
    ~Descriptor();

    bool isOpen() const { return _number >= 0; }
    /// -1 when there is none.
    int number() const { return _number; }
    /// 0, or errno; there is none afterwards in either case. 0 when there was none.
    int close();
    /// The caller owns it from then on.
    int release() { return std::exchange(_number, -1); }

private:
    int _number = -1;
};

} // namespace tidemark
