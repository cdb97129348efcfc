#pragma once

#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <unistd.h>

namespace tidemark::test {

/// A user who owns nothing.
inline constexpr uid_t NOBODY = 65534;

/// This process without the rights of root for a while, so that permission bits hold.
class PlainUser
{
public:
    PlainUser() : _isNeeded(runsAsRoot()) { EXPECT_TRUE(!_isNeeded || seteuid(NOBODY) == 0); }
    ~PlainUser() { EXPECT_TRUE(!_isNeeded || seteuid(0) == 0); }
    Q_DISABLE_COPY_MOVE(PlainUser)

    static void own(const FilePath &path)
    {
        EXPECT_TRUE(!runsAsRoot() || chown(path.cString(), NOBODY, gid_t(-1)) == 0);
    }

private:
    const bool _isNeeded;
};

} // namespace tidemark::test
