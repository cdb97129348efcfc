#include "foundation/TDError.h"
#include "support/Testing.h"

#include <cerrno>
#include <stdexcept>

namespace tidemark::test {
namespace {

TEST(TDErrorTest, TextsAreMadeOfWhatIsGivenAndKeepTheRest)
{
    const TDError underlying = TDError::posixError(ENOSPC);
    const QVariantMap given = {{TDError::UNDERLYING_ERROR_KEY, QVariant::fromValue(underlying)},
                               {TDError::DESCRIPTION_KEY, u"old"_s},
                               {TDError::RECOVERY_SUGGESTION_KEY, u"old"_s}};
    const TDError error = TDError::initalizePresentErrorWithCode(34, u"D"_s, u"R"_s, u"S"_s, given);
    EXPECT_EQ(error.domain(), u"com.velkor.Tidemark"_s);
    EXPECT_EQ(error.localizedDescription(), u"D\n\nR\n\nError Code: 34"_s);
    EXPECT_EQ(error.localizedFailureReason(), u"R"_s);
    EXPECT_EQ(error.localizedRecoverySuggestion(), u"S"_s);
    EXPECT_EQ(error.userInfo().value(TDError::UNDERLYING_ERROR_KEY).value<TDError>().code(), ENOSPC);
    EXPECT_EQ(error.userInfo().size(), 4);

    // The line shows 32 bits, the error keeps all; only a missing suggestion is replaced.
    const TDError large = TDError::initalizePresentErrorWithCode(0x1'8000'0000, u"D"_s, u"R"_s);
    EXPECT_TRUE(large.localizedRecoverySuggestion().startsWith(u"For assistance"_s));
    EXPECT_EQ(TDError::initalizePresentErrorWithCode(1, u"D"_s, u"R"_s, u""_s).localizedRecoverySuggestion(),
              u""_s);
    EXPECT_EQ(large.code(), 0x1'8000'0000);
    EXPECT_EQ(large.localizedDescription(), u"D\n\nR\n\nError Code: -2147483648"_s);
    EXPECT_THROW(TDError::initalizePresentErrorWithCode(1, QString(), u"R"_s), std::invalid_argument);
    EXPECT_THROW(TDError::initalizePresentErrorWithCode(1, u"D"_s, QString()), std::invalid_argument);
}

TEST(TDErrorTest, SystemNumbersAreNotTakenForCodesOfTheApplication)
{
    const FilePath path(QByteArray("/a/b"));
    TDError error = TDError::posixError(EPERM, path, u"It failed."_s);
    EXPECT_EQ(error.code(), TD_ERROR_CODE_TD_FILE_READER_FILE_OPEN_ERROR);
    EXPECT_FALSE(error.hasCode(TD_ERROR_CODE_TD_FILE_READER_FILE_OPEN_ERROR));
    EXPECT_EQ(error.domain(), u"NSPOSIXErrorDomain"_s);
    EXPECT_EQ(error.localizedFailureReason(), u"It failed."_s);
    EXPECT_EQ(error.userInfo().value(TDError::FILE_PATH_KEY).value<FilePath>(), path);
    error.clear();
    EXPECT_TRUE(error.isNull());
    EXPECT_FALSE(error.hasCode(0));
}

} // namespace
} // namespace tidemark::test
