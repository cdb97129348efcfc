#pragma once

#include "replace/UndoStepReader.h"

#include <QHash>

namespace tidemark {

/// Goes back through a step, file by file. What was done to a file in several turns, each from what the one
/// before it left, comes as one.
class UndoChains
{
public:
    /// Reads all of the step. The reader must stay as long as this object.
    explicit UndoChains(UndoStepReader &reader);

    /// How many next() gives in all.
    qint64 count() const { return _count; }
    /// Everything that was done to a file, the latest first; empty at the end.
    std::vector<UndoEntry> next();

private:
    struct Link
    {
        quint32 block = 0;
        quint32 index = 0; ///< in the block
        qint64 previous = -1;
        bool isLatest = true;
    };

    UndoStepReader &_reader;
    std::vector<Link> _links;
    size_t _left; ///< the next is looked for in front of this one
    qint64 _count = 0;
};

} // namespace tidemark
