#include "session/UnreadableFiles.h"

#include "foundation/LocalizedText.h"

#include <algorithm>
#include <iterator>

namespace tidemark {

namespace {

TDError errorOf(const TDFindResultItem &file)
{
    const FindResultItems &children = file.children();
    return file.matches() == nullptr && !children.isEmpty() ? children.first()->error() : TDError();
}

bool isNoText(const TDFindResultItem &file)
{
    return errorOf(file).hasCode(TD_ERROR_CODE_TD_FILE_READER_FILE_ENCODING_ERROR);
}

QString textOf(EncodingSource source)
{
    switch (source) {
    case EncodingSource::Mark:
        return localizedString("byte-order mark");
    case EncodingSource::Declaration:
        return localizedString("declared");
    case EncodingSource::Attribute:
        return localizedString("noted with the file");
    case EncodingSource::Chosen:
        return localizedString("chosen");
    default:
        return localizedString("default");
    }
}

} // namespace

bool couldNotBeRead(const TDFindResultItem &file)
{
    return !errorOf(file).isNull();
}

bool mayBeReadAs(const TDFindResultItem &file)
{
    return isNoText(file) || file.encoding().source == EncodingSource::Chosen;
}

FindResultItems filesUnreadableLike(const TDFindResultItem &file, const FindResultItems &files)
{
    FindResultItems alike;
    std::copy_if(files.begin(), files.end(), std::back_inserter(alike), [&file](const auto &other) {
        return isNoText(*other) && other->encoding().encoding == file.encoding().encoding;
    });
    return isNoText(file) ? alike : FindResultItems();
}

QString encodingText(SettledEncoding encoding)
{
    const QString name = localizedNameOfStringEncoding(encoding.encoding);
    return name.isEmpty() ? QString() : formatted(localizedString("%@, %@"), {name, textOf(encoding.source)});
}

} // namespace tidemark
