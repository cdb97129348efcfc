#include "app/AppTest.h"
#include "app/KindFilter.h"

#include <QAbstractItemModelTester>
#include <QLineEdit>
#include <QMessageBox>

namespace tidemark::test {

namespace {

class KindsEditorTest : public AppTest
{
protected:
    KindsEditorTest()
    {
        controller.setKinds({{u"A"_s, u"*.a"_s, false}, {u"B"_s, u"*.b"_s, false}, {u"C"_s, u"*.c"_s, true}});
        controller.showPreferencePanelAndSelectFileTypesTab();
        EXPECT_TRUE(QTest::qWaitForWindowActive(preferences().window()));
    }

    QTableView *table() { return ui().kindsTableView; }
    void select(int row) { table()->setCurrentIndex(table()->model()->index(row, 0)); }
    static QString titles()
    {
        QString titles;
        const QList<Kind> kinds = kindsInForce();
        for (const Kind &kind : kinds)
            titles += kind.title;
        return titles;
    }
};

TEST_F(KindsEditorTest, ButtonsAndKeysChangeTheListInForce)
{
    const QAbstractItemModelTester tester(table()->model(),
                                          QAbstractItemModelTester::FailureReportingMode::Fatal);
    select(1);
    ui().moveKindUpButton->click();
    EXPECT_EQ(titles(), u"BAC"_s);
    QTest::keyClick(table(), Qt::Key_Down, Qt::AltModifier);
    QTest::keyClick(table(), Qt::Key_Down, Qt::AltModifier);
    EXPECT_EQ(titles(), u"ACB"_s);
    EXPECT_FALSE(ui().moveKindDownButton->isEnabled());
    ui().duplicateKindButton->click();
    EXPECT_EQ(titles(), u"ACBB"_s);
    QTest::keyClick(table(), Qt::Key_Delete);
    ui().removeKindButton->click();
    EXPECT_EQ(titles(), u"AC"_s);
    select(0);
    ui().addKindButton->click();
    EXPECT_EQ(kindsInForce().size(), 3);
    controller.setKinds({{u"Z"_s, u"*.z"_s, true}});
    EXPECT_EQ(table()->model()->index(0, 0).data(), u"Z"_s);
    ui().removeKindButton->click();
    EXPECT_EQ(titles(), QString());
    EXPECT_FALSE(ui().removeKindButton->isEnabled());
    ui().addKindButton->click();
    EXPECT_EQ(kindsInForce().size(), 1);
}

TEST_F(KindsEditorTest, ANewKindIsAPatternReadyToBeTypedOrNothing)
{
    const std::tuple<QString, Qt::Key, QList<Kind>> cases[] = {
        {u"rs"_s, Qt::Key_Return, {{u"*.rs"_s, u"*.rs"_s, false}}},
        {u"rs"_s, Qt::Key_Tab, {{u"*.rs"_s, u"*.rs"_s, false}}},
        {u"rs"_s, Qt::Key_Escape, {}},
        {QString(), Qt::Key_Return, {}},
        {QString(), Qt::Key_Escape, {}},
    };
    const QList<Kind> kinds = kindsInForce();
    const auto newField = [this] {
        select(0);
        ui().addKindButton->click();
        auto *field = qobject_cast<QLineEdit *>(QApplication::focusWidget());
        EXPECT_TRUE(field != nullptr && field->text() == u"*."_s);
        return field;
    };
    for (const auto &[typed, key, added] : cases) {
        QLineEdit *field = newField();
        QTest::keyClicks(field, typed);
        QTest::keyClick(field, key);
        const QList<Kind> expected = kinds.first(1) + added + kinds.sliced(1);
        EXPECT_TRUE(waitFor([&] { return kindsInForce() == expected; }, 1000)) << qPrintable(titles());
        controller.setKinds(kinds);
    }
    // One that is begun takes the place of one that was left unfinished.
    newField();
    QLineEdit *field = newField();
    QCoreApplication::processEvents();
    EXPECT_EQ(QApplication::focusWidget(), field);
    EXPECT_EQ(kindsInForce().size(), kinds.size() + 1);
}

TEST_F(KindsEditorTest, RowsAreEditedInPlace)
{
    select(0);
    QTest::keyClick(table(), Qt::Key_Space);
    EXPECT_TRUE(kindsInForce()[0].include);
    table()->setCurrentIndex(table()->model()->index(0, KindsModel::FilterColumn));
    QTest::keyClick(table(), Qt::Key_F2);
    auto *field = qobject_cast<QLineEdit *>(QApplication::focusWidget());
    ASSERT_NE(field, nullptr);
    field->clear();
    QTest::keyClicks(field, u"uti:public.nonsense"_s);
    QTest::keyClick(field, Qt::Key_Return);
    EXPECT_TRUE(waitFor([] { return kindsInForce()[0].uti == u"uti:public.nonsense"_s; }));
    EXPECT_EQ(ui().kindRemarkLabel->text(), u"“public.nonsense” is not a known type: no file will match."_s);
    EXPECT_EQ(controller.kinds()[0].title, u"A"_s);
}

TEST_F(KindsEditorTest, TheFactoryListComesBackAfterAQuestion)
{
    for (const bool confirms : {false, true}) {
        ui().restoreKindsButton->click();
        auto *question = preferences().window()->findChild<QMessageBox *>(u"restoreKindsQuestion"_s);
        ASSERT_NE(question, nullptr);
        if (confirms)
            question->buttons().first()->click();
        else
            QTest::keyClick(question, Qt::Key_Escape);
        QCoreApplication::sendPostedEvents(question, QEvent::DeferredDelete);
        EXPECT_EQ(kindsInForce() == Kind::defaultKinds(), confirms);
    }
}

TEST(KindFilter, OnlyKnownTypesAndPatternsGoWithoutARemark)
{
    for (const QString &fine : {u"*.txt"_s, u"?"_s, u"[ab]x"_s, u"uti:public.text"_s, u"uti:PUBLIC.item"_s})
        EXPECT_EQ(kindFilterRemark(fine), QString()) << fine.toStdString();
    for (const QString &odd :
         {u""_s, u"public.item"_s, u"uti:"_s, u"uti:*.txt"_s, u"src/*.c"_s, u"[ab"_s, u"[]"_s})
        EXPECT_NE(kindFilterRemark(odd), QString()) << odd.toStdString();
    const QStringList known = knownTypeFilters();
    EXPECT_GE(known.size(), 15);
    for (const QString &filter : known)
        EXPECT_EQ(kindFilterRemark(filter), QString()) << filter.toStdString();
}

} // namespace

} // namespace tidemark::test
