#pragma once

#include "text/TextEncoding.h"

#include <span>

namespace tidemark {

inline constexpr CoreFoundationEncoding CF_ENCODING_MAC_ROMAN = 0;
inline constexpr CoreFoundationEncoding CF_ENCODING_UTF16 = 0x100;
inline constexpr CoreFoundationEncoding CF_ENCODING_UTF7 = 0x04000100;
inline constexpr CoreFoundationEncoding CF_ENCODING_UTF8 = 0x08000100;
inline constexpr CoreFoundationEncoding CF_ENCODING_UTF32 = 0x0C000100;
inline constexpr CoreFoundationEncoding CF_ENCODING_UTF16_BIG_ENDIAN = 0x10000100;
inline constexpr CoreFoundationEncoding CF_ENCODING_UTF16_LITTLE_ENDIAN = 0x14000100;
inline constexpr CoreFoundationEncoding CF_ENCODING_UTF32_BIG_ENDIAN = 0x18000100;
inline constexpr CoreFoundationEncoding CF_ENCODING_UTF32_LITTLE_ENDIAN = 0x1C000100;
/// Part n of ISO 8859 is this number plus n.
inline constexpr CoreFoundationEncoding CF_ENCODING_ISO_8859_BASE = 0x200;
inline constexpr CoreFoundationEncoding CF_ENCODING_ISO_LATIN1 = 0x201;
inline constexpr CoreFoundationEncoding CF_ENCODING_WINDOWS_LATIN1 = 0x500;
inline constexpr CoreFoundationEncoding CF_ENCODING_ASCII = 0x600;
inline constexpr CoreFoundationEncoding CF_ENCODING_ISO_2022_JP = 0x820;
inline constexpr CoreFoundationEncoding CF_ENCODING_ISO_2022_JP_2 = 0x821;
inline constexpr CoreFoundationEncoding CF_ENCODING_ISO_2022_JP_1 = 0x822;
inline constexpr CoreFoundationEncoding CF_ENCODING_ISO_2022_JP_3 = 0x823;
inline constexpr CoreFoundationEncoding CF_ENCODING_ISO_2022_CN = 0x830;
inline constexpr CoreFoundationEncoding CF_ENCODING_ISO_2022_CN_EXT = 0x831;
inline constexpr CoreFoundationEncoding CF_ENCODING_ISO_2022_KR = 0x840;
inline constexpr CoreFoundationEncoding CF_ENCODING_EUC_JP = 0x920;
inline constexpr CoreFoundationEncoding CF_ENCODING_EUC_CN = 0x930;
inline constexpr CoreFoundationEncoding CF_ENCODING_EUC_TW = 0x931;
inline constexpr CoreFoundationEncoding CF_ENCODING_EUC_KR = 0x940;
inline constexpr CoreFoundationEncoding CF_ENCODING_HZ = 0xA05;
inline constexpr CoreFoundationEncoding CF_ENCODING_VISCII = 0xA07;
inline constexpr CoreFoundationEncoding CF_ENCODING_UTF7_IMAP = 0xA10;
inline constexpr CoreFoundationEncoding CF_ENCODING_NEXTSTEP = 0xB01;
inline constexpr CoreFoundationEncoding CF_ENCODING_NON_LOSSY_ASCII = 0xBFF;

/// What is known of an encoding; a text that isn't known is empty.
struct TextEncodingRow
{
    StringEncoding stringEncoding;
    CoreFoundationEncoding coreFoundationEncoding;
    const char *charSetName;
    const char *displayName;
    const char *icuConverter;
    const char *aliases; ///< separated by blanks, lower case
};

std::span<const TextEncodingRow> allTextEncodings();
/// Those the platform offers, in its order.
std::span<const TextEncodingRow> offeredTextEncodings();
/// Null for a number that names no encoding.
const TextEncodingRow *textEncodingRow(CoreFoundationEncoding encoding);

} // namespace tidemark
