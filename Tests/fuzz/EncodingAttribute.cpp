// The encoding recorded with a file, where the file system keeps attributes, and its value by itself.

#include "Fuzzing.h"

#include "foundation/ExtendedAttributes.h"
#include "reading/EncodingDetection.h"
#include "reading/TDFileReader.h"

#include <sys/xattr.h>

namespace tidemark::fuzz {

namespace {

StringEncoding checkedEncoding(const QString &value)
{
    const StringEncoding encoding = encodingFromAttributeValue(value);
    if (encoding == TD_FILE_COMMON_UNKNOWN_ENCODING)
        return encoding;
    require(encodingFromAttributeValue(attributeValueForEncoding(encoding)) == encoding,
            "an encoding survives being recorded");
    return encoding;
}

} // namespace

void run(Input &input)
{
    const QByteArray value = input.rest();
    const qsizetype zero = value.indexOf('\0');
    const std::optional<QString> text = textFromUtf8(zero < 0 ? value : value.left(zero));
    const StringEncoding expected = text ? checkedEncoding(*text) : TD_FILE_COMMON_UNKNOWN_ENCODING;

    const FilePath path = writeFile("file", "text");
    if (setxattr(path.cString(), "user.com.apple.TextEncoding", value.constData(), size_t(value.size()), 0) !=
        0)
        return;
    require(pathExtendedAttributeValueForKey(path, TD_EXTENDED_ATTRIBUTE_TEXT_ENCODING) == text,
            "the attribute's text");
    TDError error;
    const auto reader = TDFileReader::fileReaderWithFile(path, TD_FILE_COMMON_UNKNOWN_ENCODING, error);
    require(reader != nullptr, "the file can be opened");
    require(reader->stringEncoding() ==
                (expected == TD_FILE_COMMON_UNKNOWN_ENCODING ? defaultEncodingIdentifier() : expected),
            "the reader takes the recorded encoding");
    require(reader->closeFile(error), "the file can be closed");
}

} // namespace tidemark::fuzz
