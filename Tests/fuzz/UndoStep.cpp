// A step of the undo journal, as it stands on the disk: an input is the file, with hashes put right so that
// what it says is looked at. Files that it names aren't there, or hold something else.

#include "Fuzzing.h"

#include "replace/ContentDifference.h"
#include "replace/RewriteUndo.h"
#include "replace/UndoChains.h"
#include "replace/UndoStepFiles.h"

#include <QtEndian>

#include <unistd.h>

namespace tidemark::fuzz {

namespace {

using namespace UndoStepFormat;

/// The blocks of an input, with hashes that hold.
QByteArray stepOf(Input &input)
{
    QByteArray step = SIGNATURE.toByteArray();
    step += headerBlock({UndoStepKind::Undo, QDateTime::fromMSecsSinceEpoch(0), {}, {}, 0});
    while (!input.isEmpty()) {
        QByteArray body = input.some();
        if (input.flag()) {
            // Behind two short counts.
            body = body.first(std::min<qsizetype>(2, body.size())) + qCompress(body.mid(2));
        }
        QByteArray start(1, "HFBT"[input.below(4)]);
        start.resize(5);
        qToLittleEndian(quint32(body.size()), start.data() + 1);
        const quint64 hash = digestOfBytes(start + body).hash;
        start.resize(BLOCK_HEAD_SIZE);
        qToLittleEndian(hash, start.data() + 5);
        step += start + body;
    }
    return step;
}

} // namespace

void run(Input &input)
{
    const QByteArray name = "undo-0000000000000001-AAAAAA";
    const bool isRaw = input.flag();
    const FilePath path = writeFile(name, isRaw ? input.rest() : stepOf(input));
    const FilePath file = writeFile("file", "what nobody may change");
    bool namesRealFile = false;
    const TimeLimit limit;
    const auto reader = UndoStepReader::open(path, UndoStepKind::Undo);
    require(isRaw || reader, "a header is found");
    for (size_t block = 0; reader && block < reader->blockCount(); ++block) {
        for (const UndoEntry &entry : reader->entries(block)) {
            require(entry.path.bytes().startsWith('/'), "paths are absolute");
            namesRealFile = namesRealFile || ::access(entry.path.cString(), F_OK) == 0;
            const auto plan = planBack(entry.differences, entry.after.size, entry.before.size);
            require(!plan || plan->newSize() == entry.before.size, "a plan gives as much as it should");
        }
    }
    if (reader) {
        (void)reader->backups();
        UndoChains chains(*reader);
        qint64 count = 0;
        while (!chains.next().empty())
            ++count;
        require(count == chains.count(), "as many files as were said");
    }
    limit.check("a step is read soon", 0.5);
    if (namesRealFile)
        return;
    const std::atomic<bool> stop = false;
    const auto outcome = RewriteUndo(UndoJournal(folder(), 1 << 20), stop).takeBack(name);
    require(outcome.filesDone == 0, "no file holds what the step left");
    require(contentOf(file) == "what nobody may change", "and none is changed");
    (void)::unlink(path.cString());
}

} // namespace tidemark::fuzz
