#pragma once

#include <chrono>

namespace tidemark {

/// How many threads of a search read and search. As many as there are processors where the files are in
/// memory; more while they wait for a disk and the processors have nothing to do, as a disk serves many at
/// once; fewer again when that is over.
class TeamSize
{
public:
    /// How often to look.
    static constexpr std::chrono::milliseconds INTERVAL{4};

    /// What happened since the last look.
    struct Sample
    {
        std::chrono::nanoseconds passed;
        std::chrono::nanoseconds processorTime; ///< of all threads
        bool hasRead;                           ///< from a disk
    };

    /// Stays as it is.
    static TeamSize fixed(int threads) { return TeamSize(threads, threads, threads); }
    /// For this machine: never more than the descriptors of the process allow.
    static TeamSize forThisMachine();
    TeamSize(int usual, int most, int processors) : _usual(usual), _most(most), _processors(processors) {}

    int current() const { return _current; }
    bool isFixed() const { return _usual == _most; }
    bool isGrown() const { return _current > _usual; }
    void look(const Sample &sample);

private:
    int _usual;
    int _most;
    int _processors;
    int _current = _usual;
    bool _hasRead = false; ///< at the last look
};

} // namespace tidemark
