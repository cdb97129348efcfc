#include "app/CommandLine.h"

#include "text/TextEncoding.h"

#include <QDataStream>
#include <QIODevice>

#include <algorithm>
#include <array>
#include <filesystem>
#include <string>
#include <system_error>

namespace tidemark {

namespace {

constexpr quint32 REQUEST_FORMAT = 0x54444D31;

/// Those that take a value of their own. They begin with one dash or two.
constexpr std::array<QByteArrayView, 13> TOOLKIT_OPTIONS_WITH_VALUE = {
    "platform", "platformpluginpath", "platformtheme", "plugin",  "style",       "stylesheet",   "display",
    "geometry", "qwindowgeometry",    "qwindowtitle",  "session", "qwindowicon", "qmljsdebugger"};
constexpr std::array<QByteArrayView, 5> TOOLKIT_OPTIONS = {"reverse", "sync", "widgetcount", "nograb",
                                                           "dograb"};

template <typename Names>
bool isAmong(const Names &names, QByteArrayView name)
{
    return std::find(names.begin(), names.end(), name) != names.end();
}

/// As the path bar of a location shows it: without "." and double slashes. Links and ".." are followed, since
/// a location is never a link.
FilePath settledPath(const QByteArray &path)
{
    const std::filesystem::path plain = std::filesystem::path(path.toStdString()).lexically_normal();
    std::error_code noSuchFile;
    const std::filesystem::path real = std::filesystem::canonical(path.toStdString(), noSuchFile);
    const std::string settled = (noSuchFile ? plain : real).native();
    const bool hasSlashAtEnd = settled.size() > 1 && settled.back() == '/';
    return FilePath(
        QByteArray::fromStdString(hasSlashAtEnd ? settled.substr(0, settled.size() - 1) : settled));
}

/// The arguments one after the other.
class Parser
{
public:
    Parser(const QList<QByteArray> &arguments, const FilePath &currentFolder)
        : _arguments(arguments), _currentFolder(currentFolder)
    {}

    CommandLine parse()
    {
        while (_next < _arguments.size() && _line.wish == CommandLine::Wish::Window)
            _take(_arguments[_next++]);
        return _line;
    }

private:
    void _take(const QByteArray &argument)
    {
        if (_hasOnlyPathsLeft || !argument.startsWith('-') || argument == "-")
            _addPath(argument);
        else if (argument == "--")
            _hasOnlyPathsLeft = true;
        else if (argument.startsWith("--"))
            _takeOption(argument);
        else
            _takeToolkitOption(argument);
    }

    void _takeOption(const QByteArray &argument)
    {
        const qsizetype equals = argument.indexOf('=');
        const QByteArray name = argument.first(equals < 0 ? argument.size() : equals);
        if (name == "--find")
            _takeText(name, equals, argument, _line.request.findText);
        else if (name == "--replace")
            _takeText(name, equals, argument, _line.request.replaceText);
        else if (argument == "--regex")
            _line.request.isRegularExpression = true;
        else if (argument == "--help")
            _line.wish = CommandLine::Wish::Help;
        else if (argument == "--version")
            _line.wish = CommandLine::Wish::Version;
        else
            _takeToolkitOption(argument);
    }

    void _takeText(const QByteArray &name, qsizetype equals, const QByteArray &argument,
                   std::optional<QString> &text)
    {
        if (equals < 0 && _next == _arguments.size())
            return _refuse(name + " needs a text");
        const QByteArray bytes = equals < 0 ? _arguments[_next++] : argument.sliced(equals + 1);
        text = textFromUtf8(bytes);
        if (!text)
            _refuse("the text of " + name + " isn't UTF-8");
    }

    void _takeToolkitOption(const QByteArray &argument)
    {
        const QByteArrayView name = QByteArrayView(argument).sliced(argument.startsWith("--") ? 2 : 1);
        const bool hasValue = isAmong(TOOLKIT_OPTIONS_WITH_VALUE, name);
        if (hasValue && _next < _arguments.size())
            ++_next;
        else if (!isAmong(TOOLKIT_OPTIONS, name) &&
                 !isAmong(TOOLKIT_OPTIONS_WITH_VALUE, name.first(std::max(qsizetype(0), name.indexOf('=')))))
            _refuse("unknown option " + argument);
    }

    void _addPath(const QByteArray &argument)
    {
        if (argument.isEmpty())
            return _refuse("a path is empty");
        if (!argument.startsWith('/') && _currentFolder.isEmpty())
            return _refuse("the current folder is gone");
        _line.request.paths << settledPath(
            argument.startsWith('/') ? argument : _currentFolder.appendingPathComponent(argument).bytes());
    }

    void _refuse(const QByteArray &problem)
    {
        _line.wish = CommandLine::Wish::WrongUsage;
        _line.problem = problem;
    }

    const QList<QByteArray> &_arguments;
    const FilePath &_currentFolder;
    qsizetype _next = 0;
    bool _hasOnlyPathsLeft = false;
    CommandLine _line;
};

void put(QDataStream &stream, const std::optional<QString> &text)
{
    stream << text.has_value() << text.value_or(QString());
}

void take(QDataStream &stream, std::optional<QString> &text)
{
    bool hasText = false;
    QString value;
    stream >> hasText >> value;
    text = hasText ? std::optional(value) : std::nullopt;
}

} // namespace

CommandLine CommandLine::parsed(const QList<QByteArray> &arguments, const FilePath &currentFolder)
{
    return Parser(arguments, currentFolder).parse();
}

QByteArray CommandLine::usage()
{
    return "usage: tidemark [--find TEXT] [--replace TEXT] [--regex] [--] [PATH...]\n"
           "       tidemark --version | --help\n"
           "\n"
           "Opens a search window on the files and folders; in a running Tidemark, if there is one.\n"
           "  --find TEXT     the text to find\n"
           "  --replace TEXT  the text that replaces it\n"
           "  --regex         the text to find is a regular expression\n"
           "  --              everything behind it is a path\n"
           "  --version       the version, and no window\n"
           "  --help          this text, and no window\n"
           "Options of the toolkit, such as -style NAME, are taken as well.\n";
}

QByteArray LaunchRequest::encoded() const
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(QDataStream::Qt_6_4);
    stream << REQUEST_FORMAT;
    put(stream, findText);
    put(stream, replaceText);
    stream << isRegularExpression << qint32(paths.size());
    for (const FilePath &path : paths)
        stream << path.bytes();
    return bytes;
}

std::optional<LaunchRequest> LaunchRequest::decoded(const QByteArray &bytes)
{
    QDataStream stream(bytes);
    stream.setVersion(QDataStream::Qt_6_4);
    quint32 format = 0;
    LaunchRequest request;
    qint32 count = 0;
    stream >> format;
    take(stream, request.findText);
    take(stream, request.replaceText);
    stream >> request.isRegularExpression >> count;
    for (qint32 number = 0; number < count && stream.status() == QDataStream::Ok; ++number) {
        QByteArray path;
        stream >> path;
        request.paths << FilePath(path);
    }
    const bool isWhole = format == REQUEST_FORMAT && stream.status() == QDataStream::Ok && stream.atEnd();
    return isWhole ? std::optional(request) : std::nullopt;
}

} // namespace tidemark
