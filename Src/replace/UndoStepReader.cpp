#include "replace/UndoStepReader.h"

#include "foundation/FileSystemCalls.h"
#include "replace/NewContent.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tidemark {

using namespace UndoStepFormat;

namespace {

constexpr size_t CACHED_BLOCKS = 4;

QByteArray bytesAt(int descriptor, qint64 offset, qint64 count)
{
    QByteArray bytes(count, Qt::Uninitialized);
    bytes.truncate(std::max<qint64>(0, readFully(descriptor, bytes.data(), count, offset)));
    return bytes;
}

} // namespace

std::unique_ptr<UndoStepReader> UndoStepReader::open(const FilePath &path, UndoStepKind kind)
{
    Descriptor descriptor(
        FileSystemCalls::current().open(path.cString(), O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0));
    if (!descriptor.isOpen())
        return nullptr;
    std::unique_ptr<UndoStepReader> reader(new UndoStepReader(path, std::move(descriptor)));
    return reader->_readStructure(kind) ? std::move(reader) : nullptr;
}

bool UndoStepReader::lock()
{
    struct stat status;
    // Whoever had it may have written more of it since it was read.
    return _lock.take(_descriptor.number(), _path) && ::fstat(_descriptor.number(), &status) == 0 &&
           status.st_nlink > 0 && _readStructure(_step.kind);
}

bool UndoStepReader::_readStructure(UndoStepKind kind)
{
    struct stat status;
    if (::fstat(_descriptor.number(), &status) != 0 || !S_ISREG(status.st_mode) ||
        bytesAt(_descriptor.number(), 0, SIGNATURE.size()) != SIGNATURE)
        return false;
    _step = {};
    _step.size = status.st_size;
    _blocks.clear();
    _backupBlocks.clear();
    _cache.clear();
    _end = 0;
    qint64 offset = SIGNATURE.size();
    bool hasHeader = false;
    while (offset < status.st_size) {
        const auto head = blockHead(bytesAt(_descriptor.number(), offset, BLOCK_HEAD_SIZE));
        const Block block{head.value_or(BlockHead()), offset + BLOCK_HEAD_SIZE};
        if (!head || head->length > status.st_size - block.offset) {
            _step.isDamaged = true;
            break;
        }
        if (!hasHeader) {
            const auto body = head->kind == BlockKind::Header ? _bodyOf(block) : std::nullopt;
            const auto header = body ? headerOf(*body, kind) : std::nullopt;
            if (!header)
                return false;
            static_cast<UndoStepHeader &>(_step) = *header;
            hasHeader = true;
        } else {
            _noteBlock(block);
        }
        offset = _end = block.offset + head->length;
    }
    return hasHeader;
}

void UndoStepReader::_noteBlock(const Block &block)
{
    if (block.head.kind == BlockKind::Backups)
        _backupBlocks.push_back(block);
    if (block.head.kind != BlockKind::Files && block.head.kind != BlockKind::Totals)
        return;
    const auto counts = countsOf(
        bytesAt(_descriptor.number(), block.offset, std::min<qint64>(LONGEST_COUNTS, block.head.length)));
    if (!counts) {
        _step.isDamaged = true;
    } else if (block.head.kind == BlockKind::Files) {
        _step.files += counts->files;
        _step.matches += counts->matches;
        _blocks.push_back(block);
    } else {
        _step.files = counts->files;
        _step.matches = counts->matches;
    }
}

/// Nothing when it is damaged.
std::optional<QByteArray> UndoStepReader::_bodyOf(const Block &block)
{
    const QByteArray body = bytesAt(_descriptor.number(), block.offset, block.head.length);
    return isWhole(block.head, body) ? std::optional(body) : std::nullopt;
}

const std::vector<UndoEntry> &UndoStepReader::entries(size_t block)
{
    for (auto cached = _cache.begin(); cached != _cache.end(); ++cached) {
        if (cached->first == block) {
            _cache.splice(_cache.begin(), _cache, cached);
            return cached->second;
        }
    }
    if (_cache.size() == CACHED_BLOCKS)
        _cache.pop_back();
    const auto body = _bodyOf(_blocks[block]);
    auto entries = body ? entriesOf(*body) : std::nullopt;
    _step.isDamaged = _step.isDamaged || !entries;
    _cache.emplace_front(block, entries ? std::move(*entries) : std::vector<UndoEntry>());
    return _cache.front().second;
}

std::vector<KeptBackup> UndoStepReader::backups()
{
    std::vector<KeptBackup> all;
    for (const Block &block : _backupBlocks) {
        const auto body = _bodyOf(block);
        const auto backups = body ? backupsOf(*body) : std::nullopt;
        _step.isDamaged = _step.isDamaged || !backups;
        if (backups)
            all.insert(all.end(), backups->begin(), backups->end());
    }
    return all;
}

void UndoStepReader::noteTotals(qint64 files, qint64 matches)
{
    // A block behind one that was cut off would never be found.
    if (FileSystemCalls::current().truncate(_descriptor.number(), off_t(_end)) != 0 ||
        ::lseek(_descriptor.number(), 0, SEEK_END) != _end)
        return;
    (void)writeAll(_descriptor.number(), totalsBlock(files, matches));
}

} // namespace tidemark
