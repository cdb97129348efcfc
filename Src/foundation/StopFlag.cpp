#include "foundation/StopFlag.h"

namespace tidemark {

namespace {

thread_local const StopScope *innermostScope = nullptr;

bool isSet(const std::atomic<bool> *flag)
{
    return flag != nullptr && flag->load(std::memory_order_relaxed);
}

} // namespace

StopScope::StopScope(const std::atomic<bool> *first, const std::atomic<bool> *second)
    : _first(first), _second(second), _outer(innermostScope)
{
    innermostScope = this;
}

StopScope::~StopScope()
{
    innermostScope = _outer;
}

void checkForStop()
{
    const StopScope *scope = innermostScope;
    if (scope != nullptr && (isSet(scope->_first) || isSet(scope->_second)))
        throw WorkStopped();
}

} // namespace tidemark
