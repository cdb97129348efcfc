#pragma once

#include "foundation/FilePath.h"

#include <QByteArray>
#include <QList>

namespace tidemark::test {

/// A kind of file system as it is made and mounted.
struct DiskKind
{
    const char *name = nullptr;    ///< for the messages of tests
    const char *type = nullptr;    ///< as mount and mkfs call it
    const char *options = nullptr; ///< of mount
    qint64 megabytes = 0;
};

extern const QList<DiskKind> DISK_KINDS;

/// A real file system in an image file, mounted by loop device. The image can be copied at any moment: the
/// copy is what a power cut at that moment leaves.
class DiskImage
{
public:
    /// Makes an empty file system in memory, which is mounted on the folder; `memory` is a mount option that
    /// says how much of it there is for all images.
    DiskImage(const DiskKind &kind, const FilePath &folder, const char *memory = "size=1g");
    /// Unmounts it.
    ~DiskImage();
    DiskImage(const DiskImage &) = delete;
    DiskImage &operator=(const DiskImage &) = delete;

    /// False where that isn't permitted or the tools are missing.
    bool mount();
    void unmount();
    /// Where it is mounted, always the same.
    const FilePath &mountPoint() const { return _mountPoint; }

    /// Keeps the image as it is now, for later returns to it.
    void keepState();
    /// The image is as it was kept. Not while it is mounted.
    void returnToKeptState();
    /// The image is as a power cut in this moment leaves it, once the file system is unmounted.
    void photograph();
    /// What was photographed takes the place of the image. Not while it is mounted.
    void returnToPhotograph();

private:
    DiskKind _kind;
    FilePath _folder;
    FilePath _image;
    FilePath _kept;
    FilePath _photograph;
    FilePath _mountPoint;
    bool _isInMemory = false;
    bool _isMade = false;
    bool _isMounted = false;
};

} // namespace tidemark::test
