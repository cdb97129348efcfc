#include "replace/UndoStepFormat.h"

#include "replace/ByteFields.h"

#include <QtEndian>

#include <algorithm>

namespace tidemark::UndoStepFormat {

namespace {

constexpr int FAST = 1;
/// The compression used never gives more than this; what claims to hold more is damaged.
constexpr qint64 BEST_COMPRESSION = 1100;
/// qCompress() puts the size in front.
constexpr qsizetype SIZE_OF_CONTENT = 4;
constexpr quint64 TRANSIENT_BACKUP = 1;
constexpr quint64 HAS_ENCODING_ATTRIBUTE = 2; ///< which stands at the end

QByteArray block(BlockKind kind, const QByteArray &body)
{
    QByteArray start(1, char(kind));
    start.resize(5);
    qToLittleEndian(quint32(body.size()), start.data() + 1);
    const quint64 hash = digestOfBytes(start + body).hash;
    putHash(start, hash);
    return start + body;
}

QByteArray compressedBlock(BlockKind kind, Counts counts, const QByteArray &content)
{
    QByteArray body;
    putNumber(body, quint64(counts.files));
    putNumber(body, quint64(counts.matches));
    return block(kind, body + qCompress(content, FAST));
}

/// What stands behind the counts, uncompressed; null when it is damaged.
QByteArray uncompressed(QByteArrayView body, Counts &counts)
{
    FieldReader fields(body);
    counts.files = fields.count();
    counts.matches = fields.count();
    const QByteArrayView compressed = fields.rest();
    if (!fields.isValid() || compressed.size() <= SIZE_OF_CONTENT)
        return {};
    const qint64 size = qFromBigEndian<quint32>(compressed.data());
    if (size > LARGEST_CONTENT || size > compressed.size() * BEST_COMPRESSION)
        return {};
    return qUncompress(reinterpret_cast<const uchar *>(compressed.data()), compressed.size());
}

void putDigest(QByteArray &bytes, const ContentDigest &digest)
{
    putNumber(bytes, quint64(digest.size));
    putHash(bytes, digest.hash);
}

ContentDigest takeDigest(FieldReader &fields)
{
    const qint64 size = fields.size();
    return {size, fields.hash()};
}

/// Paths follow each other in the order of a walk: what each has in common with the one before is left out.
void putPath(QByteArray &bytes, const FilePath &path, const FilePath &previous)
{
    const auto [end, ignored] = std::mismatch(path.bytes().cbegin(), path.bytes().cend(),
                                              previous.bytes().cbegin(), previous.bytes().cend());
    const qsizetype common = end - path.bytes().cbegin();
    putNumber(bytes, quint64(common));
    putBytes(bytes, QByteArrayView(path.bytes()).sliced(common));
}

FilePath takePath(FieldReader &fields, const FilePath &previous)
{
    const qint64 common = fields.size();
    const QByteArrayView rest = fields.bytes();
    if (common > previous.bytes().size())
        return {};
    return FilePath(previous.bytes().first(common).append(rest));
}

/// Nobody but this program writes steps, but a file can be damaged in a way that no hash tells: a path that
/// isn't absolute, or that a system call would take for a shorter one, is none.
bool isPlausible(const FilePath &path)
{
    return path.bytes().startsWith('/') && !path.bytes().contains('\0');
}

/// All that a compressed block lists; nothing where it makes no sense. `take` reads one from the fields,
/// given the path of the one before, and returns its own path, which is empty when that isn't plausible.
template <typename Listed, typename Take>
std::optional<std::vector<Listed>> allOf(QByteArrayView body, const Take &take)
{
    Counts counts;
    const QByteArray content = uncompressed(body, counts);
    std::vector<Listed> all;
    FieldReader fields(content);
    FilePath previous;
    while (!content.isNull() && !fields.isAtEnd()) {
        previous = take(fields, previous, all.emplace_back());
        if (!fields.isValid() || previous.isEmpty())
            return {};
    }
    return fields.isValid() && qint64(all.size()) == counts.files ? std::optional(std::move(all))
                                                                  : std::nullopt;
}

} // namespace

QByteArray headerBlock(const UndoStepHeader &header)
{
    QByteArray body;
    putNumber(body, quint64(header.date.toMSecsSinceEpoch()));
    putHash(body, header.owner);
    putBytes(body, header.findText.toUtf8());
    putBytes(body, header.replaceText.toUtf8());
    return block(BlockKind::Header, body);
}

std::optional<QByteArray> filesBlock(const std::vector<UndoEntry> &entries)
{
    QByteArray content;
    Counts counts;
    FilePath previous;
    for (const UndoEntry &entry : entries) {
        putPath(content, entry.path, previous);
        putNumber(content, entry.device);
        putNumber(content, entry.inode);
        putDigest(content, entry.before);
        putDigest(content, entry.after);
        putNumber(content, quint64(entry.matches));
        putNumber(content, (entry.isBackupTransient ? TRANSIENT_BACKUP : 0) |
                               (entry.encodingAttribute ? HAS_ENCODING_ATTRIBUTE : 0));
        putBytes(content, entry.differences);
        if (entry.encodingAttribute)
            putBytes(content, entry.encodingAttribute->toUtf8());
        previous = entry.path;
        ++counts.files;
        counts.matches += entry.matches;
        if (content.size() > LARGEST_CONTENT)
            return {};
    }
    return compressedBlock(BlockKind::Files, counts, content);
}

QByteArray backupsBlock(const std::vector<KeptBackup> &backups)
{
    QByteArray content;
    FilePath previous;
    for (const KeptBackup &backup : backups) {
        putPath(content, backup.file, previous);
        putPath(content, backup.path, backup.file);
        putNumber(content, backup.inode);
        putDigest(content, backup.content);
        previous = backup.file;
    }
    return compressedBlock(BlockKind::Backups, {qint64(backups.size()), 0}, content);
}

QByteArray totalsBlock(qint64 files, qint64 matches)
{
    QByteArray body;
    putNumber(body, quint64(files));
    putNumber(body, quint64(matches));
    return block(BlockKind::Totals, body);
}

std::optional<BlockHead> blockHead(QByteArrayView bytes)
{
    if (bytes.size() < BLOCK_HEAD_SIZE)
        return {};
    BlockHead head{BlockKind(bytes[0]), qFromLittleEndian<quint32>(bytes.data() + 1),
                   qFromLittleEndian<quint64>(bytes.data() + 5)};
    switch (head.kind) {
    case BlockKind::Header:
    case BlockKind::Files:
    case BlockKind::Backups:
    case BlockKind::Totals:
        return head;
    }
    return {};
}

bool isWhole(const BlockHead &head, QByteArrayView body)
{
    QByteArray start(1, char(head.kind));
    start.resize(5);
    qToLittleEndian(quint32(head.length), start.data() + 1);
    ContentHasher hasher;
    hasher.add(start);
    hasher.add(body);
    return body.size() == head.length && hasher.digest().hash == head.hash;
}

std::optional<Counts> countsOf(QByteArrayView body)
{
    FieldReader fields(body);
    const Counts counts{fields.count(), fields.count()};
    return fields.isValid() ? std::optional(counts) : std::nullopt;
}

std::optional<UndoStepHeader> headerOf(QByteArrayView body, UndoStepKind kind)
{
    FieldReader fields(body);
    UndoStepHeader header;
    header.kind = kind;
    header.date = QDateTime::fromMSecsSinceEpoch(fields.size());
    header.owner = fields.hash();
    header.findText = QString::fromUtf8(fields.bytes());
    header.replaceText = QString::fromUtf8(fields.bytes());
    return fields.isValid() && header.date.isValid() ? std::optional(header) : std::nullopt;
}

std::optional<std::vector<UndoEntry>> entriesOf(QByteArrayView body)
{
    return allOf<UndoEntry>(body, [](FieldReader &fields, const FilePath &previous, UndoEntry &entry) {
        entry.path = takePath(fields, previous);
        entry.device = fields.number();
        entry.inode = fields.number();
        entry.before = takeDigest(fields);
        entry.after = takeDigest(fields);
        entry.matches = fields.count();
        const quint64 flags = fields.number();
        entry.isBackupTransient = (flags & TRANSIENT_BACKUP) != 0;
        entry.differences = fields.bytes().toByteArray();
        if ((flags & HAS_ENCODING_ATTRIBUTE) != 0)
            entry.encodingAttribute = QString::fromUtf8(fields.bytes());
        return isPlausible(entry.path) ? entry.path : FilePath();
    });
}

std::optional<std::vector<KeptBackup>> backupsOf(QByteArrayView body)
{
    return allOf<KeptBackup>(body, [](FieldReader &fields, const FilePath &previous, KeptBackup &backup) {
        backup.file = takePath(fields, previous);
        backup.path = takePath(fields, backup.file);
        backup.inode = fields.number();
        backup.content = takeDigest(fields);
        return isPlausible(backup.file) && isPlausible(backup.path) ? backup.file : FilePath();
    });
}

} // namespace tidemark::UndoStepFormat
