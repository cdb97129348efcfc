#pragma once

#include "foundation/Descriptor.h"
#include "replace/RecordLock.h"
#include "replace/UndoStep.h"
#include "replace/UndoStepFormat.h"

#include <list>
#include <memory>
#include <optional>
#include <vector>

namespace tidemark {

/// Reads the file of a step, whatever has become of it: what is damaged is left out. One thread at a time.
class UndoStepReader
{
public:
    /// Null when it isn't a step that can be read.
    static std::unique_ptr<UndoStepReader> open(const FilePath &path, UndoStepKind kind);
    UndoStepReader(const UndoStepReader &) = delete;
    UndoStepReader &operator=(const UndoStepReader &) = delete;

    /// For this object alone, until it goes; what was read before is read anew. False when somebody else has
    /// the step, or it was removed.
    bool lock();
    /// Without the id and who uses it. `isDamaged` tells what was found so far.
    const UndoStep &step() const { return _step; }
    /// Notes how much is left of the step, after lock(); where that fails, more is told than there is.
    void noteTotals(qint64 files, qint64 matches);

    size_t blockCount() const { return _blocks.size(); }
    /// The files of a group, by its index; none when they are damaged. Valid until four other groups were
    /// asked for.
    const std::vector<UndoEntry> &entries(size_t block);
    /// All that the file lists but for damaged blocks.
    std::vector<KeptBackup> backups();

private:
    struct Block
    {
        UndoStepFormat::BlockHead head;
        qint64 offset = 0; ///< of the body
    };
    UndoStepReader(const FilePath &path, Descriptor descriptor)
        : _path(path), _descriptor(std::move(descriptor))
    {}
    bool _readStructure(UndoStepKind kind);
    void _noteBlock(const Block &block);
    std::optional<QByteArray> _bodyOf(const Block &block);

    FilePath _path;
    RecordLock _lock; ///< let go of behind the descriptor
    Descriptor _descriptor;
    UndoStep _step;
    std::vector<Block> _blocks; ///< of files
    std::vector<Block> _backupBlocks;
    qint64 _end = 0; ///< of what was understood
    /// The latest ones: going back through a step asks for a few blocks again and again.
    std::list<std::pair<size_t, std::vector<UndoEntry>>> _cache;
};

} // namespace tidemark
