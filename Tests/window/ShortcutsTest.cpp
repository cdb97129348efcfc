#include "support/gui/WindowFixture.h"
#include "window/ShortcutSteps.h"

namespace tidemark::test {

namespace {

using ShortcutsTest = WindowTest;

TEST_F(ShortcutsTest, EveryShortcutWorksFromEveryPlaceThatDoesntEditWithIt)
{
    expectEveryShortcutEverywhere(application);
}

} // namespace

} // namespace tidemark::test
