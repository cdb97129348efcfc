#include "search/FileNameCase.h"

#ifdef __linux__
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/vfs.h>
#else
#include <unistd.h>
#endif

namespace tidemark {

#ifdef __linux__
CaseRule caseRuleOfNamesIn(int folderDescriptor)
{
    // Of the families FAT, exFAT, HFS+, SMB 1 and SMB 2, which keep case but don't go by it.
    constexpr unsigned WITHOUT_CASE[] = {0x4D44, 0x2011BAB0, 0x482B, 0xFF534D42, 0xFE534D42};
    struct statfs fileSystem = {};
    if (::fstatfs(folderDescriptor, &fileSystem) == 0) {
        for (const unsigned type : WITHOUT_CASE) {
            if (unsigned(fileSystem.f_type) == type)
                return CaseRule::Ignore;
        }
    }
    int flags = 0;
    const bool isFolded = ::ioctl(folderDescriptor, FS_IOC_GETFLAGS, &flags) == 0 && (flags & FS_CASEFOLD_FL);
    return isFolded ? CaseRule::Ignore : CaseRule::Exact;
}
#else
CaseRule caseRuleOfNamesIn(int folderDescriptor)
{
#ifdef _PC_CASE_SENSITIVE
    if (::fpathconf(folderDescriptor, _PC_CASE_SENSITIVE) == 0)
        return CaseRule::Ignore;
#endif
    (void)folderDescriptor;
    return CaseRule::Exact;
}
#endif

} // namespace tidemark
