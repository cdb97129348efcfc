#pragma once

#include "support/gui/WindowFixture.h"

#include "ui_MyDocument.h"
#include "window/results/ResultsPane.h"

#include <QLineEdit>
#include <QMessageBox>

namespace tidemark::test {

/// A whole search window, shown and active.
struct OpenWindow
{
    explicit OpenWindow(ApplicationDelegate &application) : document(application)
    {
        document.makeWindowControllers();
        document.showWindows();
        EXPECT_TRUE(QTest::qWaitForWindowActive(window()));
    }

    TDMyDocumentController &controller() { return *document.myDocumentController(); }
    SearchWindow *window() { return controller().window(); }
    Ui::MyDocument &ui() { return window()->ui(); }
    TDSearchResultsOutlineView *outline() { return ui().searchResultsOutlineView; }
    QLineEdit *find() { return ui().findTextComboBox->lineEdit(); }

    void searchIn(const FilePath &path, const QString &text)
    {
        TDSearchLocation location;
        location.setURL(path.toUrl());
        document.setSearchLocations({location});
        document.setFindText(text);
    }
    void search()
    {
        controller().startSearch(StartStopButton::On);
        ASSERT_TRUE(waitFor([this] { return !controller().searching(); }, 120000));
    }
    QMessageBox *sheet()
    {
        for (QMessageBox *box : window()->findChildren<QMessageBox *>()) {
            if (box->isVisible())
                return box;
        }
        return nullptr;
    }
    void press(const QString &buttonText)
    {
        ASSERT_NE(sheet(), nullptr);
        for (QAbstractButton *button : sheet()->buttons()) {
            if (button->text() == buttonText)
                button->click();
        }
    }
    void replaceAll(const QString &replaceText)
    {
        document.setReplaceText(replaceText);
        controller().actions().replaceAll->trigger();
        bool ended = false;
        const auto connection = QObject::connect(&controller(), &TDMyDocumentController::replaceEnded,
                                                 [&ended] { ended = true; });
        press(QStringLiteral("Replace All"));
        EXPECT_TRUE(waitFor([&ended] { return ended; }, 120000));
        QObject::disconnect(connection);
    }

    WindowedDocument document;
};

} // namespace tidemark::test
