#pragma once

#include "replace/UndoStep.h"

#include <QByteArray>
#include <QByteArrayView>

#include <optional>
#include <vector>

namespace tidemark {

/// What a step's file consists of: a signature and blocks, each with its kind, its length and a hash of all
/// of it, so that what was cut off or damaged is noticed and the blocks behind it are still found.
namespace UndoStepFormat {

inline constexpr QByteArrayView SIGNATURE = "TDMUNDO1";
inline constexpr qsizetype BLOCK_HEAD_SIZE = 13;
/// Of what a block holds before it is compressed.
inline constexpr qint64 LARGEST_CONTENT = 512 << 20;

enum class BlockKind : char {
    Header = 'H',
    Files = 'F',
    Backups = 'B',
    Totals = 'T', ///< what really was changed; the last one counts
};

QByteArray headerBlock(const UndoStepHeader &header);
/// Nothing when that is too much for a block.
std::optional<QByteArray> filesBlock(const std::vector<UndoEntry> &entries);
QByteArray backupsBlock(const std::vector<KeptBackup> &backups);
QByteArray totalsBlock(qint64 files, qint64 matches);

struct BlockHead
{
    BlockKind kind = BlockKind::Header;
    qint64 length = 0; ///< of what follows the head
    quint64 hash = 0;
};
/// Nothing where no block begins.
std::optional<BlockHead> blockHead(QByteArrayView bytes);
/// Whether the body is the one that was written behind the head.
bool isWhole(const BlockHead &head, QByteArrayView body);

struct Counts
{
    qint64 files = 0;
    qint64 matches = 0;
};
/// What the first bytes of the body of a block of files, or of totals, say; LONGEST_COUNTS of them are
/// enough.
std::optional<Counts> countsOf(QByteArrayView body);
inline constexpr qsizetype LONGEST_COUNTS = 20;

// Of whole blocks, which may still hold anything: nothing where they make no sense.
std::optional<UndoStepHeader> headerOf(QByteArrayView body, UndoStepKind kind);
std::optional<std::vector<UndoEntry>> entriesOf(QByteArrayView body);
std::optional<std::vector<KeptBackup>> backupsOf(QByteArrayView body);

} // namespace UndoStepFormat

} // namespace tidemark
