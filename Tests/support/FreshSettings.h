#pragma once

#include "foundation/UserDefaults.h"
#include "search/Kind.h"
#include "search/RegisterUserDefaults.h"

#include <gtest/gtest.h>

namespace tidemark::test {

/// Each test starts from the settings of a fresh installation but for files that arrive collapsed, and none
/// ever sees the user's own.
class FreshSettings : public testing::EmptyTestEventListener
{
public:
    static void install() { testing::UnitTest::GetInstance()->listeners().Append(new FreshSettings); }

private:
    void OnTestStart(const testing::TestInfo & /*test*/) override
    {
        UserDefaults::setStandard(UserDefaults::inMemory());
        registerUserDefaults(UserDefaults::standard());
        UserDefaults::standard().setObject(TD_USER_DEFAULTS_NAME_EXPAND_RESULTS, false);
        setKindsInForce(Kind::defaultKinds());
    }
};

} // namespace tidemark::test
