#pragma once

#include "app/TDApplicationController.h"
#include "app/TDPreferenceController.h"
#include "support/gui/WindowFixture.h"
#include "ui_Preferences.h"

namespace tidemark::test {

/// The application as it stands after its start, without a window.
class AppTest : public WindowTest
{
protected:
    AppTest() { controller.awakeFromNib(); }

    TDPreferenceController &preferences() { return controller.preferenceController(); }
    Ui::Preferences &ui() { return preferences().ui(); }
    UserDefaults &settings() { return UserDefaults::standard(); }

    TDApplicationController controller;
};

} // namespace tidemark::test
