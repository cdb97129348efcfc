#pragma once

#include "foundation/UserDefaults.h"
#include "support/Events.h"
#include "support/SearchFolder.h"
#include "window/ApplicationDelegate.h"
#include "window/TDMyDocumentController.h"
#include "window/WindowedDocument.h"

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
class WindowTest : public SearchFolderTest
{
protected:
    FakeApplication application;
};

} // namespace tidemark::test
