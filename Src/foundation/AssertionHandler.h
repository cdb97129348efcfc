#pragma once

#include <stdexcept>
#include <string>

namespace tidemark {

/// Where a programming error was noticed, and what it was.
struct AssertionFailure
{
    std::string function; ///< "TDReadBuffer::~TDReadBuffer()"
    std::string file;     ///< "Src/TDFileReader"
    int line = 0;         ///< 0 where no line is given
    std::string description;
};

/// Thrown by raiseAssertion().
class InternalInconsistency : public std::logic_error
{
public:
    explicit InternalInconsistency(const AssertionFailure &failure);
};

using AssertionHandler = void (*)(const AssertionFailure &);

/// Replaces the handler of this process (null: the default one) and returns the one before it. The default
/// writes the failure to standard error and goes on. Tests install one that records.
AssertionHandler setAssertionHandler(AssertionHandler handler);

/// Tells the handler of a programming error. Never throws: it is called from destructors.
void reportAssertion(const AssertionFailure &failure) noexcept;

/// Tells the handler, then throws InternalInconsistency.
[[noreturn]] void raiseAssertion(const AssertionFailure &failure);

} // namespace tidemark
