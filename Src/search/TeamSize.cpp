#include "search/TeamSize.h"

#include "foundation/PatientOpen.h"
#include "foundation/WorkerThreads.h"

#include <algorithm>
#include <utility>

namespace tidemark {

namespace {

constexpr int MOST_THREADS = 32;
constexpr int DESCRIPTORS_FOR_EACH_THREAD = 16;
/// Of what the processors could do: below it there is room for more threads, above it for fewer.
constexpr double LITTLE_USE = 0.75;
constexpr double FULL_USE = 0.95;

} // namespace

TeamSize TeamSize::forThisMachine()
{
    const int processors = processorCount();
    // With one alone nobody would search while the folders are walked.
    const int usual = std::max(2, processors);
    const int affordable =
        int(std::min<rlim_t>(mostDescriptors() / DESCRIPTORS_FOR_EACH_THREAD, MOST_THREADS));
    return {usual, std::max(usual, affordable), processors};
}

void TeamSize::look(const Sample &sample)
{
    const double use = double(sample.processorTime.count()) / (double(sample.passed.count()) * _processors);
    const bool hadRead = std::exchange(_hasRead, sample.hasRead);
    // On a busy machine little use alone says nothing, and a single look may have seen another's reading.
    if (use < LITTLE_USE && sample.hasRead && (hadRead || isGrown()))
        _current = std::min(_current * 2, _most);
    else if (use > FULL_USE || (!sample.hasRead && !hadRead))
        _current = std::max(_current / 2, _usual);
}

} // namespace tidemark
