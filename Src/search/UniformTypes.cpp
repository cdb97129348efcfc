#include "search/UniformTypes.h"

#include <QHash>
#include <QMimeDatabase>

#include <algorithm>
#include <array>
#include <iterator>

using namespace Qt::Literals::StringLiterals;

namespace tidemark {

namespace {

struct TypeName
{
    UniformType type;
    QStringView identifier;
};

constexpr TypeName TYPE_NAMES[] = {
    {UniformType::Item, u"public.item"},
    {UniformType::Data, u"public.data"},
    {UniformType::Content, u"public.content"},
    {UniformType::Text, u"public.text"},
    {UniformType::PlainText, u"public.plain-text"},
    {UniformType::SourceCode, u"public.source-code"},
    {UniformType::Script, u"public.script"},
    {UniformType::Html, u"public.html"},
    {UniformType::Rtf, u"public.rtf"},
    {UniformType::Xml, u"public.xml"},
    {UniformType::Image, u"public.image"},
    {UniformType::Audio, u"public.audio"},
    {UniformType::Movie, u"public.movie"},
    {UniformType::Pdf, u"com.adobe.pdf"},
    {UniformType::Archive, u"public.archive"},
};

constexpr UniformTypes NOTHING_MORE;
constexpr UniformTypes CONTENT = UniformType::Content;
constexpr UniformTypes TEXT = CONTENT | UniformType::Text;

struct MappingRow
{
    UniformTypes types;
    /// Separated by spaces; a star at the end stands for any rest.
    const char16_t *mimeTypes;
};

/// The first row that names a MIME type or any of its ancestors holds. The order is what keeps apart types
/// that the shared database derives from one another: scripts and JSON from executables, JSON from
/// JavaScript, PostScript and mail from plain text, office documents from ZIP archives.
constexpr MappingRow MAPPING[] = {
    {NOTHING_MORE, u"inode/*"},
    {CONTENT | UniformType::Pdf, u"application/pdf"},
    {CONTENT, u"application/postscript image/x-eps"},
    {NOTHING_MORE, u"message/* application/mbox application/pgp-encrypted application/pgp-keys "
                   u"application/pgp-signature application/pkcs7-signature application/x-font-type1"},
    {TEXT | UniformType::PlainText, u"audio/x-mpegurl video/vnd.mpegurl application/vnd.apple.mpegurl"},
    {TEXT, u"audio/x-scpls"},
    {TEXT | UniformType::Image | UniformType::Xml, u"image/svg+xml"},
    {CONTENT | UniformType::Image, u"image/*"},
    {CONTENT | UniformType::Audio, u"audio/*"},
    {CONTENT | UniformType::Movie, u"video/*"},
    {TEXT | UniformType::Html, u"text/html"},
    {TEXT | UniformType::Rtf, u"application/rtf"},
    {TEXT | UniformType::Xml, u"application/xml"},
    {TEXT, u"application/json application/x-yaml text/css text/calendar text/vcard text/vtt"},
    {SCRIPT_FILE,
     u"application/javascript application/ecmascript application/x-shellscript application/x-csh "
     u"application/x-perl application/x-ruby application/x-php application/x-awk "
     u"application/vnd.coffeescript text/x-python text/x-python3 text/x-lua text/tcl text/vbscript "
     u"text/x-makefile"},
    {SOURCE_CODE_FILE,
     u"text/x-csrc text/x-c++src text/x-chdr text/x-c++hdr text/x-objcsrc text/x-objc++src text/x-opencl-src "
     u"text/x-java text/x-csharp text/x-go text/x-kotlin text/x-scala text/x-groovy text/x-gradle "
     u"text/x-dart "
     u"text/x-pascal text/x-fortran text/x-adasrc text/x-haskell text/x-literate-haskell text/x-ocaml "
     u"text/x-erlang text/x-elixir text/x-scheme text/x-common-lisp text/x-emacs-lisp text/x-vala "
     u"text/x-genie "
     u"text/x-verilog text/x-svsrc text/x-svhdr text/x-vhdl text/x-dsrc text/x-matlab text/x-cmake "
     u"text/x-meson "
     u"text/x-scons text/x-qml text/x-sass text/x-scss text/x-cobol text/x-modelica text/x-crystal "
     u"text/x-eiffel text/x-idl text/rust application/sql application/x-m4 application/x-gdscript"},
    {PLAIN_TEXT_FILE, u"text/plain"},
    {CONTENT,
     u"application/msword application/vnd.ms-excel* application/vnd.ms-powerpoint* "
     u"application/vnd.ms-word* application/vnd.openxmlformats-officedocument* "
     u"application/vnd.oasis.opendocument* application/epub+zip application/vnd.apple.pages "
     u"application/vnd.apple.numbers application/vnd.apple.keynote application/x-webarchive model/*"},
    {UniformType::Archive,
     u"application/zip application/x-tar application/x-compressed-tar application/gzip application/x-bzip "
     u"application/x-bzip2 application/x-xz application/zstd application/x-7z-compressed application/vnd.rar "
     u"application/x-cpio application/x-archive application/x-java-archive "
     u"application/vnd.debian.binary-package application/x-rpm application/x-cd-image "
     u"application/x-apple-diskimage"},
};
constexpr size_t NO_ROW = std::size(MAPPING);

/// The mapping under the names that the installed database gives the types, which change between its
/// releases.
class MimeMapping
{
public:
    MimeMapping()
    {
        for (size_t row = 0; row < NO_ROW; ++row) {
            for (const QString &name : QString::fromUtf16(MAPPING[row].mimeTypes).split(u' '))
                _add(name, row);
        }
    }

    size_t rowOf(const QString &mimeType) const
    {
        size_t row = _rows.value(mimeType, NO_ROW);
        for (const auto &[prefix, prefixRow] : _prefixes) {
            if (prefixRow < row && mimeType.startsWith(prefix))
                row = prefixRow;
        }
        return row;
    }

private:
    void _add(const QString &name, size_t row)
    {
        if (name.endsWith(u'*')) {
            _prefixes.append({name.chopped(1), row});
            return;
        }
        _rows.insert(name, row);
        const QString nameInDatabase = QMimeDatabase().mimeTypeForName(name).name();
        if (!nameInDatabase.isEmpty() && !_rows.contains(nameInDatabase))
            _rows.insert(nameInDatabase, row);
    }

    QHash<QString, size_t> _rows;
    QList<std::pair<QString, size_t>> _prefixes;
};

} // namespace

UniformTypes uniformTypesForIdentifiers(const QStringList &identifiers)
{
    UniformTypes types;
    for (const TypeName &name : TYPE_NAMES)
        types.setFlag(name.type, identifiers.contains(name.identifier, Qt::CaseInsensitive));
    return types;
}

QSet<QString> identifiersOfUniformTypes(UniformTypes types)
{
    QSet<QString> identifiers;
    for (const TypeName &name : TYPE_NAMES) {
        if (types.testFlag(name.type))
            identifiers.insert(name.identifier.toString());
    }
    return identifiers;
}

UniformTypes uniformTypesOfMimeType(const QMimeType &mimeType)
{
    static const MimeMapping mapping;
    size_t row = mapping.rowOf(mimeType.name());
    for (const QString &ancestor : mimeType.allAncestors())
        row = std::min(row, mapping.rowOf(ancestor));
    return row == NO_ROW ? ANY_FILE : ANY_FILE | MAPPING[row].types;
}

} // namespace tidemark
