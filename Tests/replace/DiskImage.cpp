#include "replace/DiskImage.h"

#include "support/TemporaryFolder.h"
#include "support/TimeLimit.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QProcess>
#include <QStringList>

#include <cstdio>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tidemark::test {

namespace {

bool runs(const QByteArray &program, const QList<QByteArray> &arguments)
{
    if (!MAY_START_PROGRAMS)
        return false;
    QStringList texts;
    for (const QByteArray &argument : arguments)
        texts << QFile::decodeName(argument);
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(QString::fromLatin1(program), texts);
    return process.waitForFinished(-1) && process.exitStatus() == QProcess::NormalExit &&
           process.exitCode() == 0;
}

bool makeFileSystem(const DiskKind &kind, const FilePath &image)
{
    QList<QByteArray> arguments = {"-q"};
    // Nothing is left to be done in the background, which would go on while the image is copied.
    if (kind.type == QByteArrayView("ext4"))
        arguments << "-F"
                  << "-J"
                  << "size=4"
                  << "-E"
                  << "lazy_itable_init=0,lazy_journal_init=0";
    return ::truncate(image.cString(), off_t(kind.megabytes) << 20) == 0 &&
           runs(QByteArray("mkfs.") + kind.type, arguments << image.bytes());
}

void copyImage(const FilePath &from, const FilePath &to, const char *holes)
{
    ASSERT_TRUE(runs("cp", {QByteArray("--sparse=") + holes, from.bytes(), to.bytes()}));
}

} // namespace

// The smallest images that the tools make. No commit comes on its own while an image is copied.
const QList<DiskKind> DISK_KINDS = {
    {"ext4", "ext4", "commit=600", 64},
    {"ext4writeback", "ext4", "commit=600,data=writeback,noauto_da_alloc", 64},
    {"xfs", "xfs", "nouuid", 300},
    {"btrfs", "btrfs", "commit=300", 128},
};

DiskImage::DiskImage(const DiskKind &kind, const FilePath &folder, const char *memory)
    : _kind(kind), _folder(folder), _image(folder.appendingPathComponent("image")),
      _kept(folder.appendingPathComponent("kept")), _photograph(folder.appendingPathComponent("photograph")),
      _mountPoint(folder.appendingPathComponent("disk"))
{
    _isInMemory = runs("mount", {"-t", "tmpfs", "-o", memory, "tmpfs", folder.bytes()});
    if (!_isInMemory)
        return;
    writeFile(_image, {});
    EXPECT_EQ(::mkdir(_mountPoint.cString(), S_IRWXU), 0);
    _isMade = makeFileSystem(kind, _image);
}

DiskImage::~DiskImage()
{
    if (_isMounted)
        unmount();
    // The loop device may not have let go of the image yet.
    if (_isInMemory) {
        EXPECT_EQ(::umount2(_folder.cString(), MNT_DETACH), 0) << errno;
    }
}

bool DiskImage::mount()
{
    _isMounted = _isMade && runs("mount", {"-t", _kind.type, "-o", QByteArray("loop,") + _kind.options,
                                           _image.bytes(), _mountPoint.bytes()});
    return _isMounted;
}

void DiskImage::unmount()
{
    _isMounted = false;
    EXPECT_EQ(::umount2(_mountPoint.cString(), 0), 0) << errno;
}

void DiskImage::keepState()
{
    copyImage(_image, _kept, "always");
}

void DiskImage::returnToKeptState()
{
    (void)::unlink(_image.cString());
    copyImage(_kept, _image, "auto");
}

void DiskImage::photograph()
{
    copyImage(_image, _photograph, "auto");
}

void DiskImage::returnToPhotograph()
{
    EXPECT_EQ(std::rename(_photograph.cString(), _image.cString()), 0);
}

} // namespace tidemark::test
