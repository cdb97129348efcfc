#pragma once

#include <QTest>

namespace tidemark::test {

/// Delivers events until the condition holds; false after the time is up.
template <typename Condition>
bool waitFor(Condition condition, int milliseconds = 10000)
{
    return QTest::qWaitFor(condition, milliseconds);
}

} // namespace tidemark::test
