#include "app/DesktopSession.h"

#include "app/AppTest.h"

namespace tidemark::test {

namespace {

using DesktopSessionTest = AppTest;

TEST_F(DesktopSessionTest, WindowsAreOpenedAgainWithWhatWasInThem)
{
    const FilePath file = folder.write("a.txt", "foo\n");
    WindowedDocument *first = controller.openUntitledDocument(TD_DOCUMENT_TYPE);
    first->setFindText(u"one"_s);
    first->myDocumentController()->locations().addSearchLocations({folder.path().toUrl()});
    WindowedDocument *second = controller.openUntitledDocument(TD_DOCUMENT_TYPE);
    second->setFindText(u"two"_s);
    second->setReplaceText(u"three"_s);
    second->setSearchLocations({});
    second->myDocumentController()->locations().addSearchLocations({file.toUrl()});
    DesktopSession(controller).save(u"session_1"_s);

    TDApplicationController later;
    DesktopSession session(later);
    EXPECT_FALSE(session.restore(u"session_2"_s));
    EXPECT_TRUE(later.documents().isEmpty());
    ASSERT_TRUE(session.restore(u"session_1"_s));
    ASSERT_EQ(later.documents().size(), 2);
    for (int index = 0; index < 2; ++index)
        EXPECT_EQ(later.documents()[index]->windowState(), controller.documents()[index]->windowState());
    EXPECT_EQ(later.documents()[1]->replaceText(), u"three"_s);
}

} // namespace

} // namespace tidemark::test
