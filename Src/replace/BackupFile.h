#pragma once

#include "foundation/Descriptor.h"
#include "foundation/FilePath.h"
#include "foundation/TDError.h"
#include "replace/FileMetadata.h"
#include "replace/FileState.h"

#include <functional>
#include <optional>

namespace tidemark {

/// A copy of a file's content, verified by its hash, beside the file or in the temporary folder. It lies
/// there until it is deleted; destroying the object only closes the descriptor.
class BackupFile
{
public:
    enum class Kind {
        Lasting,   ///< beside the file, with its rights and attributes
        Transient, ///< in the temporary folder, for its owner only as long as it is there
    };
    /// Gets the backup's path before there is anything at it; an errno ends the making.
    using BeforeMaking = std::function<int(const FilePath &backup)>;

    /// Longer contents aren't held in memory.
    static constexpr qint64 LONGEST_CONTENT_HELD = 1 << 20;

    /// A file as it was, before and after the copying.
    struct Original
    {
        FileState state;
        QByteArray content; ///< all of it, unless it is long
        bool isContentHeld() const { return state.size <= LONGEST_CONTENT_HELD; }
    };

    /// Makes the backup of a regular file that isn't a link. Nothing, with code 25 or 26 (or 30 when the file
    /// changed meanwhile), and nothing left at the path, on a failure; `errorNumber` is then the system's, or
    /// 0.
    static std::optional<BackupFile> backupFileOf(const FilePath &path, Kind kind, Flush flush,
                                                  const BeforeMaking &beforeMaking, Original &original,
                                                  TDError &error, int &errorNumber);

    /// Where the backup of a file is made.
    static FilePath folderFor(const FilePath &path, Kind kind);

    /// False, with code 27, when it stays.
    bool deleteTemporaryBackupFile(TDError &error) const;

    const FilePath &path() const { return _path; }
    const ContentDigest &content() const { return _content; }
    /// As it was made.
    const FileState &state() const { return _state; }
    /// Open for reading and writing since the file was made; -1 after closeDescriptor().
    int descriptor() const { return _descriptor.number(); }
    void closeDescriptor() { (void)_descriptor.close(); }
    /// Whether the path still leads to this very file, as it was made.
    bool isInPlace() const;

private:
    BackupFile(const FilePath &path, Descriptor descriptor) : _path(path), _descriptor(std::move(descriptor))
    {}

    int _copyOriginalFileToBackupLocation(int file, Kind kind, Flush flush, Original &original);
    bool _copyContentOf(int file, Original &original);
    bool _copyHeldContentOf(int file, Original &original);

    FilePath _path;
    Descriptor _descriptor;
    ContentDigest _content;
    FileState _state;
};

} // namespace tidemark
