#include "search/UserIgnoreFile.h"

#include <QFile>

namespace tidemark {

namespace {

bool isBlank(char character)
{
    return character == ' ' || (character >= '\t' && character <= '\r');
}

/// Reads a configuration character by character, as a value may hold line ends and quotes.
class ConfigurationReader
{
public:
    explicit ConfigurationReader(QByteArrayView text) : _text(text)
    {
        if (_text.startsWith("\xEF\xBB\xBF"))
            _next = 3;
    }

    QByteArray excludesFile()
    {
        QByteArray found;
        while (_next < _text.size()) {
            const char character = _text[_next];
            if (isBlank(character)) {
                ++_next;
            } else if (character == '#' || character == ';') {
                _skipLine();
            } else if (character == '[') {
                _readSection();
            } else {
                const QByteArray name = _readName();
                const QByteArray value = _readValue();
                if (_isInCore && name == "excludesfile")
                    found = value;
            }
        }
        return found;
    }

private:
    void _skipLine()
    {
        const qsizetype end = _text.indexOf('\n', _next);
        _next = end < 0 ? _text.size() : end + 1;
    }

    void _readSection()
    {
        const qsizetype end = _text.indexOf(']', _next);
        if (end < 0) {
            _next = _text.size();
            return;
        }
        _isInCore =
            _text.sliced(_next + 1, end - _next - 1).trimmed().compare("core", Qt::CaseInsensitive) == 0;
        _next = end + 1;
    }

    QByteArray _readName()
    {
        const qsizetype start = _next;
        while (_next < _text.size() && _text[_next] != '=' && _text[_next] != '\n')
            ++_next;
        return _text.sliced(start, _next - start).trimmed().toByteArray().toLower();
    }

    /// From the equals sign to the end of the line; a name without one has no value that matters here.
    QByteArray _readValue()
    {
        QByteArray value("");
        qsizetype length = 0; // without blanks at the end
        bool isQuoted = false;
        if (_next < _text.size() && _text[_next] == '=')
            ++_next;
        while (_next < _text.size() && _text[_next] != '\n') {
            const char character = _text[_next++];
            if (!isQuoted && (character == '#' || character == ';')) {
                _skipLine();
                break;
            }
            if (character == '"') {
                isQuoted = !isQuoted;
            } else if (character == '\\' && _next < _text.size()) {
                _appendEscaped(value);
                length = value.size();
            } else if (isQuoted || !isBlank(character) || !value.isEmpty()) {
                value.append(character);
                if (isQuoted || !isBlank(character))
                    length = value.size();
            }
        }
        return value.first(length);
    }

    void _appendEscaped(QByteArray &value)
    {
        const char character = _text[_next++];
        if (character == 'n')
            value.append('\n');
        else if (character == 't')
            value.append('\t');
        else if (character != '\n')
            value.append(character);
    }

    QByteArrayView _text;
    qsizetype _next = 0;
    bool _isInCore = false;
};

QByteArray valueInFile(const QByteArray &path)
{
    QFile file(QFile::decodeName(path));
    return file.open(QIODevice::ReadOnly) ? excludesFileIn(file.readAll()) : QByteArray();
}

} // namespace

QByteArray excludesFileIn(QByteArrayView configuration)
{
    return ConfigurationReader(configuration).excludesFile();
}

FilePath userIgnoreFile()
{
    const QByteArray home = qgetenv("HOME");
    QByteArray settings = qgetenv("XDG_CONFIG_HOME");
    if (settings.isEmpty() && !home.isEmpty())
        settings = home + "/.config";
    QByteArray named = home.isEmpty() ? QByteArray() : valueInFile(home + "/.gitconfig");
    if (named.isNull() && !settings.isEmpty())
        named = valueInFile(settings + "/git/config");
    if (named.startsWith("~/") && !home.isEmpty())
        return FilePath(home + named.mid(1));
    if (named.startsWith('/'))
        return FilePath(named);
    return settings.isEmpty() || !named.isNull() ? FilePath() : FilePath(settings + "/git/ignore");
}

} // namespace tidemark
