#include "foundation/TextEncodingTable.h"

#include <gtest/gtest.h>

namespace tidemark {
namespace {

TEST(CharSetNamesTest, NamesAreUnderstood)
{
    const struct
    {
        CoreFoundationEncoding encoding;
        QByteArray names; ///< separated by commas
    } cases[] = {
        {0x8000100, "utf-8,UTF-8,UTF8,utf 8, utf-8 "},
        {0x100, "utf-16,utf16le,UTF-16"},
        {0x14000100, "utf-16le,UTF-16LE"},
        {0x10000100, "UTF-16BE"},
        {0x201, "iso-8859-1,ISO_8859-1,latin1"},
        {0x208, "iso-8859-8-i,ISO-8859-8"},
        {0x20C, "iso-8859-12"},
        {0x210, "iso-8859-16"},
        {0x500, "windows-1252,cp1252,Windows_1252,cp01252"},
        {0, "macintosh,MacintoshLatin2"},
        {1, "japanese"},
        {3, "korean"},
        {4, "arabic"},
        {5, "hebrew"},
        {6, "greek,x-mac-greek"},
        {7, "cyrillic"},
        {21, "thai"},
        {35, "turkish"},
        {0xA01, "shift_jis,Shift_JIS"},
        {0x420, "shift-jis,sjis,x-sjis,Windows-31J,ms_kanji"},
        {0xA03, "big5,BIG5"},
        {0x423, "big-5,csbig5,x-big5,ms950,MS950"},
        {0x421, "gbk,GBK"},
        {0x422, "ks_c_5601-1987"},
        {0x920, "euc-jp,EUC_JP"},
        {0xA02, "koi8-r,KOI8 R"},
        {TD_INVALID_CORE_FOUNDATION_ENCODING, ", "
                                              ",ansi,binary,nextstep,win1252,x-gbk,uhc,utf-8-mac,x-user-"
                                              "defined,cp943,cp99999,iso-8859-,iso-8859-0,"
                                              "iso-8859-17,utf-\xFC"},
    };
    for (const auto &[encoding, names] : cases) {
        for (const QByteArray &name : names.split(','))
            EXPECT_EQ(convertIANACharSetNameToEncoding(QString::fromLatin1(name)), encoding)
                << name.constData();
    }
}

TEST(CharSetNamesTest, NamesGivenOutAreUnderstood)
{
    for (const TextEncodingRow &row : allTextEncodings()) {
        const QString name = convertEncodingToIANACharSetName(row.coreFoundationEncoding);
        const bool isUnderstoodAsAnother = name == u"GBK" || name == u"Shift_JIS";
        if (!name.isEmpty() && !isUnderstoodAsAnother) {
            EXPECT_EQ(convertIANACharSetNameToEncoding(name), row.coreFoundationEncoding) << row.charSetName;
        }
        for (const QByteArray &alias : QByteArray(row.aliases).split(' ')) {
            if (!alias.isEmpty()) {
                EXPECT_EQ(convertIANACharSetNameToEncoding(QString::fromLatin1(alias)),
                          row.coreFoundationEncoding)
                    << alias.constData();
            }
        }
    }
    EXPECT_EQ(convertEncodingToIANACharSetName(0x420), QStringLiteral("cp932"));
    EXPECT_TRUE(convertEncodingToIANACharSetName(0xBFF).isEmpty());
    EXPECT_TRUE(convertEncodingToIANACharSetName(0x20C).isEmpty());
}

} // namespace
} // namespace tidemark
