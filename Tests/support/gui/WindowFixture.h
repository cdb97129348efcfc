#pragma once

#include "foundation/UserDefaults.h"
#include "support/Testing.h"
#include "window/ApplicationDelegate.h"
#include "window/MyDocument.h"
#include "window/TDMyDocumentController.h"

#include <QTest>

namespace tidemark::test {

class FakeApplication : public ApplicationDelegate
{
public:
    quint64 countBusyWindows() const override { return _count; }
    void setCountBusyWindows(quint64 count) override { _count = count; }
    void showPreferencePanelAndSelectFileTypesTab() override { ++countFileTypesShown; }

    int countFileTypesShown = 0;

private:
    quint64 _count = 0;
};

/// An application and a folder for each test.
class WindowTest : public testing::Test
{
protected:
    TDSearchLocation location(const FilePath &path) const
    {
        TDSearchLocation location;
        location.setURL(path.toUrl());
        return location;
    }

    FakeApplication application;
    TemporaryFolder folder;
};

/// Delivers events until the condition holds; false after the time is up.
template <typename Condition>
bool waitFor(Condition condition, int milliseconds = 10000)
{
    return QTest::qWaitFor(condition, milliseconds);
}

} // namespace tidemark::test
