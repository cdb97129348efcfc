#include "foundation/AssertionHandler.h"

#include <atomic>
#include <cstdio>

namespace tidemark {

namespace {

std::string sentence(const AssertionFailure &failure)
{
    std::string text = "assertion failed in " + failure.function + ", " + failure.file;
    if (failure.line != 0)
        text.append(":").append(std::to_string(failure.line));
    return text + ": " + failure.description;
}

void writeToStandardError(const AssertionFailure &failure)
{
    std::fprintf(stderr, "%s\n", sentence(failure).c_str());
}

std::atomic<AssertionHandler> currentHandler = writeToStandardError;

} // namespace

InternalInconsistency::InternalInconsistency(const AssertionFailure &failure)
    : std::logic_error(sentence(failure))
{}

AssertionHandler setAssertionHandler(AssertionHandler handler)
{
    return currentHandler.exchange(handler == nullptr ? writeToStandardError : handler);
}

void reportAssertion(const AssertionFailure &failure) noexcept
{
    currentHandler.load()(failure);
}

void raiseAssertion(const AssertionFailure &failure)
{
    reportAssertion(failure);
    throw InternalInconsistency(failure);
}

} // namespace tidemark
