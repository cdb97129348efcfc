#pragma once

#include "foundation/FilePath.h"

#include <QString>

#include <optional>
#include <sys/types.h>

namespace tidemark {

/// The attribute that records a text file's encoding.
inline constexpr const char *TD_EXTENDED_ATTRIBUTE_TEXT_ENCODING = "com.apple.TextEncoding";

/// The attribute's value as UTF-8 text, without following a final symbolic link; nothing on any failure, also
/// when the value isn't UTF-8. On Linux attributes live in the "user." namespace, which is added here.
std::optional<QString> pathExtendedAttributeValueForKey(const FilePath &path, const char *key);

/// The same of an open file.
std::optional<QString> descriptorExtendedAttributeValueForKey(int descriptor, const char *key);

/// Reads attributes of many open files, and asks none twice on a file system that has no attributes for
/// users. Not for several threads at once, nor for longer than file systems stay mounted.
class UserAttributes
{
public:
    /// The device is the file's.
    std::optional<QString> value(int descriptor, dev_t device, const char *key);
    bool areMissingOn(dev_t device) const { return _deviceWithout == device; }

private:
    std::optional<dev_t> _deviceWithout; ///< the last such one
};

/// Sets the attribute, following links. With the flag 1 a terminating zero byte is stored too. False on
/// failure.
bool setPathValueForExtendedAttributeKey(const FilePath &path, const char *key, const QString &value,
                                         int flag);

/// The same of an open file.
bool setDescriptorValueForExtendedAttributeKey(int descriptor, const char *key, const QString &value,
                                               int flag);

/// False on failure, also where there is none.
bool removeDescriptorExtendedAttribute(int descriptor, const char *key);

} // namespace tidemark
