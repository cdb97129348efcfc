#include "DriverOptions.h"

#include <QHash>

#include <climits>
#include <functional>
#include <limits>

namespace tidemark {

const char *const DRIVER_USAGE =
    "usage: tidemark-bench --find TEXT [--regex [--unicode]] [--whole-words] [--case-sensitive]\n"
    "                      [--kind all|text|source|PATTERN]... [--no-subfolders]\n"
    "                      [--leave-out PATTERN]... [--hidden] [--ignore-files] [--largest-size BYTES]\n"
    "                      [--encoding detect|IANA-NAME] [--read-as IANA-NAME] [--replace TEXT]\n"
    "                      [--no-backup] [--record FOLDER] [--journal FOLDER] [--preview] [--threads N]\n"
    "                      [--repeat N] [--list] [--errors] [--quiet] [--json] LOCATION...\n"
    "       tidemark-bench --interrupted FOLDER [--put-back|--keep]\n"
    "       tidemark-bench --undo FOLDER | --redo FOLDER [--record FOLDER] [--no-backup]\n"
    "       tidemark-bench --history FOLDER\n"
    "\n"
    "--read-as searches files once more that couldn't be read, behind the others, in this encoding.\n"
    "--preview prints PATH:LINE: and each line as --replace would write it, and changes nothing.\n"
    "--undo and --redo take back the last step kept by --journal, or the last undoing: a line for each "
    "file,\n"
    "done or refused, a tab, the path percent-encoded. --history prints a line for each step, the latest "
    "first:\n"
    "undo or redo, date, files, matches, bytes, find text and replace text, between tabs.\n"
    "Exit status: 0, or 1 for a malformed expression, files not put back, undone or redone, or nothing to "
    "undo\n"
    "or redo, or 2 for wrong usage.\n";

namespace {

Kind kindNamed(const QString &name)
{
    static const QHash<QString, QString> IDENTIFIERS = {
        {QStringLiteral("all"), QStringLiteral("uti:public.item")},
        {QStringLiteral("text"), QStringLiteral("uti:public.text")},
        {QStringLiteral("source"), QStringLiteral("uti:public.source-code")},
    };
    return {name, IDENTIFIERS.value(name, name), true};
}

class Parser
{
public:
    explicit Parser(const QList<QByteArray> &arguments) : _arguments(arguments) {}

    std::optional<DriverOptions> parse(QByteArray &problem)
    {
        while (_next < _arguments.size() && _problem.isEmpty())
            _takeArgument(_arguments[_next++]);
        if (_problem.isEmpty() && _options.interruptedFolder.isEmpty() &&
            _options.journal == DriverOptions::Journal::None)
            _checkSearch();
        if (_options.kinds.isEmpty())
            _options.kinds << kindNamed(QStringLiteral("text"));
        problem = _problem;
        return _problem.isEmpty() ? std::optional(_options) : std::nullopt;
    }

private:
    void _checkSearch()
    {
        if (!_hasFindText)
            _problem = "--find is missing";
        else if (_options.locations.isEmpty())
            _problem = "no location given";
        else if (_options.isUnicode && !_options.isRegularExpression)
            _problem = "--unicode goes with --regex";
        else if (_options.isPreview && !_options.replaceText)
            _problem = "--preview goes with --replace";
    }

    void _takeArgument(const QByteArray &argument)
    {
        if (_onlyLocations || !argument.startsWith("--")) {
            _options.locations << FilePath(argument);
        } else if (argument == "--") {
            _onlyLocations = true;
        } else if (!_takeFlag(argument) && !_takeDecision(argument) && !_takeFolder(argument) &&
                   !_takeOption(argument)) {
            _problem = "unknown option " + argument;
        }
    }

    bool _takeFlag(const QByteArray &name)
    {
        const QHash<QByteArray, std::pair<bool *, bool>> flags = {
            {"--regex", {&_options.isRegularExpression, true}},
            {"--unicode", {&_options.isUnicode, true}},
            {"--whole-words", {&_options.wholeWords, true}},
            {"--case-sensitive", {&_options.isCaseSensitive, true}},
            {"--no-subfolders", {&_options.includesSubFolders, false}},
            {"--no-backup", {&_options.makesBackups, false}},
            {"--hidden", {&_options.searchesHiddenFiles, true}},
            {"--ignore-files", {&_options.obeysIgnoreFiles, true}},
            {"--list", {&_options.listsLines, true}},
            {"--errors", {&_options.listsErrors, true}},
            {"--quiet", {&_options.isQuiet, true}},
            {"--json", {&_options.printsJson, true}},
            {"--preview", {&_options.isPreview, true}},
        };
        const auto flag = flags.constFind(name);
        if (flag == flags.cend())
            return false;
        *flag->first = flag->second;
        return true;
    }

    bool _takeDecision(const QByteArray &name)
    {
        if (name == "--put-back")
            _options.decision = DriverOptions::Decision::PutBack;
        else if (name == "--keep")
            _options.decision = DriverOptions::Decision::Keep;
        else
            return false;
        return true;
    }

    /// Their values are bytes.
    bool _takeFolder(const QByteArray &name)
    {
        using Journal = DriverOptions::Journal;
        const QHash<QByteArray, Journal> commands = {
            {"--undo", Journal::Undo}, {"--redo", Journal::Redo}, {"--history", Journal::History}};
        FilePath *folder = name == "--record"                               ? &_options.recordFolder
                           : name == "--interrupted"                        ? &_options.interruptedFolder
                           : name == "--journal" || commands.contains(name) ? &_options.journalFolder
                                                                            : nullptr;
        if (folder == nullptr)
            return false;
        _options.journal = commands.value(name, _options.journal);
        if (_next == _arguments.size())
            _problem = name + " needs a value";
        else
            *folder = FilePath(_arguments[_next++]);
        return true;
    }

    bool _takeOption(const QByteArray &name)
    {
        const QHash<QByteArray, std::function<void(const QString &)>> options = {
            {"--find", [this](const QString &value) { _options.findText = value, _hasFindText = true; }},
            {"--replace", [this](const QString &value) { _options.replaceText = value; }},
            {"--kind", [this](const QString &value) { _options.kinds << kindNamed(value); }},
            {"--leave-out", [this](const QString &value) { _options.leaveOutPatterns << value; }},
            {"--largest-size", [this](const QString &value) { _options.largestFileSize = _number(value); }},
            {"--encoding", [this](const QString &value) { _options.encoding = value; }},
            {"--read-as", [this](const QString &value) { _options.readAs = _encoding(value); }},
            {"--threads", [this](const QString &value) { _options.threads = int(_number(value, INT_MAX)); }},
            {"--repeat", [this](const QString &value) { _options.repeat = int(_number(value, INT_MAX)); }},
        };
        const auto option = options.constFind(name);
        if (option == options.cend())
            return false;
        if (_next == _arguments.size()) {
            _problem = name + " needs a value";
        } else if (const std::optional<QString> value = textFromUtf8(_arguments[_next++])) {
            // A byte-order mark is text here.
            (*option)(*value);
        } else {
            _problem = "the value of " + name + " isn't UTF-8";
        }
        return true;
    }

    StringEncoding _encoding(const QString &name)
    {
        const StringEncoding encoding =
            convertCoreFoundationToStringEncoding(convertIANACharSetNameToEncoding(name));
        if (encoding == TD_FILE_COMMON_UNKNOWN_ENCODING)
            _problem = "no encoding: " + name.toUtf8();
        return encoding;
    }

    qint64 _number(const QString &text, qint64 most = std::numeric_limits<qint64>::max())
    {
        bool isNumber = false;
        const qint64 number = text.toLongLong(&isNumber);
        if (!isNumber || number < 1 || number > most)
            _problem = "not a positive number: " + text.toUtf8();
        return number;
    }

    QList<QByteArray> _arguments;
    qsizetype _next = 0;
    DriverOptions _options;
    QByteArray _problem;
    bool _hasFindText = false;
    bool _onlyLocations = false;
};

} // namespace

std::optional<DriverOptions> parseArguments(const QList<QByteArray> &arguments, QByteArray &problem)
{
    return Parser(arguments).parse(problem);
}

} // namespace tidemark
