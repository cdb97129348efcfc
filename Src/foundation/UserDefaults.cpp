#include "foundation/UserDefaults.h"

#include "foundation/Descriptor.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QReadLocker>
#include <QSettings>
#include <QWriteLocker>

#include <fcntl.h>
#include <sys/stat.h>

namespace tidemark {

namespace {

/// Values come back from the file as texts.
bool isBoolean(const QVariant &value)
{
    static const QStringList words = {QStringLiteral("true"), QStringLiteral("false"), QStringLiteral("1"),
                                      QStringLiteral("0")};
    switch (value.typeId()) {
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::LongLong:
        return true;
    case QMetaType::QString:
        return words.contains(value.toString());
    default:
        return false;
    }
}

bool isInteger(const QVariant &value)
{
    bool converted = false;
    value.toLongLong(&converted);
    return converted && value.typeId() != QMetaType::QByteArray;
}

bool isString(const QVariant &value)
{
    return value.typeId() == QMetaType::QString;
}

bool isAnything(const QVariant &value)
{
    return value.isValid();
}

/// A stored "2" equals true, but no setting is read from it.
bool isStoredAs(const QVariant &stored, const QVariant &value)
{
    if (stored != value)
        return false;
    switch (value.typeId()) {
    case QMetaType::Bool:
        return isBoolean(stored);
    case QMetaType::Int:
    case QMetaType::LongLong:
        return isInteger(stored);
    default:
        return stored.typeId() == value.typeId();
    }
}

const std::array<QString, 6> BOOLEAN_KEYS = {TD_USER_DEFAULTS_NAME_REGULAR_EXPRESSION,
                                             TD_USER_DEFAULTS_NAME_UNICODE_REGULAR_EXPRESSION,
                                             TD_USER_DEFAULTS_NAME_WHOLE_WORDS,
                                             TD_USER_DEFAULTS_NAME_IGNORE_CASE,
                                             TD_USER_DEFAULTS_NAME_AUTO_DETECT_FILE_ENCODING_FROM_FILE,
                                             TD_USER_DEFAULTS_NAME_CREATE_BACKUP_BEFORE_REPLACING};

/// Keeps what people searched for from other users. The store replaces the file as a whole and takes over its
/// rights.
void keepPrivate(const QString &filePath)
{
    constexpr mode_t OF_OTHERS = S_IRWXG | S_IRWXO;
    const QByteArray path = QFile::encodeName(filePath);
    struct stat status = {};
    if (::stat(path.constData(), &status) == 0) {
        if ((status.st_mode & OF_OTHERS) != 0)
            (void)::chmod(path.constData(), status.st_mode & S_IRWXU);
        return;
    }
    QDir().mkpath(QFileInfo(filePath).path());
    const Descriptor made(
        ::open(path.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR));
}

std::unique_ptr<UserDefaults> &standardStore()
{
    static std::unique_ptr<UserDefaults> store = UserDefaults::inMemory();
    return store;
}

} // namespace

UserDefaults::UserDefaults(std::unique_ptr<QSettings> file) : _file(std::move(file))
{
    if (!_file)
        return;
    const QStringList keys = _file->allKeys();
    for (const QString &key : keys)
        _stored[key] = _file->value(key);
    _refreshCachedSettings();
}

UserDefaults::~UserDefaults() = default;

std::unique_ptr<UserDefaults> UserDefaults::inMemory()
{
    return std::unique_ptr<UserDefaults>(new UserDefaults(nullptr));
}

std::unique_ptr<UserDefaults> UserDefaults::atPath(const QString &filePath)
{
    return std::unique_ptr<UserDefaults>(
        new UserDefaults(std::make_unique<QSettings>(filePath, QSettings::IniFormat)));
}

QString UserDefaults::userFilePath()
{
    return QSettings(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("Velkor"),
                     QStringLiteral("Tidemark"))
        .fileName();
}

UserDefaults &UserDefaults::standard()
{
    return *standardStore();
}

void UserDefaults::setStandard(std::unique_ptr<UserDefaults> store)
{
    standardStore() = std::move(store);
}

void UserDefaults::registerDefaults(const QVariantMap &values)
{
    {
        const QWriteLocker locker(&_lock);
        for (auto value = values.cbegin(); value != values.cend(); ++value)
            _registered[value.key()] = value.value();
    }
    _refreshCachedSettings();
}

QVariant UserDefaults::_firstFitting(const QString &key, bool (*fits)(const QVariant &)) const
{
    const QReadLocker locker(&_lock);
    const QVariant stored = _stored.value(key);
    return fits(stored) ? stored : _registered.value(key);
}

QVariant UserDefaults::objectForKey(const QString &key) const
{
    return _firstFitting(key, isAnything);
}

bool UserDefaults::boolForKey(const QString &key) const
{
    return _firstFitting(key, isBoolean).toBool();
}

qint64 UserDefaults::integerForKey(const QString &key) const
{
    return _firstFitting(key, isInteger).toLongLong();
}

QString UserDefaults::stringForKey(const QString &key) const
{
    return _firstFitting(key, isString).toString();
}

void UserDefaults::setObject(const QString &key, const QVariant &value)
{
    {
        const QWriteLocker locker(&_lock);
        if (isStoredAs(_stored.value(key), value))
            return;
        if (value.isValid())
            _stored[key] = value;
        else
            _stored.remove(key);
    }
    if (_file)
        keepPrivate(_file->fileName());
    if (_file && value.isValid())
        _file->setValue(key, value);
    else if (_file)
        _file->remove(key);
    _refreshCachedSettings();
    Q_EMIT valueChanged(key);
}

bool UserDefaults::synchronize()
{
    if (!_file)
        return true;
    _file->sync();
    // An object keeps its first fault, even that of a damaged file that has been replaced since. A fresh one
    // tells whether the file can be written now.
    return QSettings(_file->fileName(), QSettings::IniFormat).status() != QSettings::AccessError;
}

void UserDefaults::_refreshCachedSettings()
{
    for (size_t index = 0; index < BOOLEAN_KEYS.size(); ++index)
        _booleans[index].store(boolForKey(BOOLEAN_KEYS[index]), std::memory_order_relaxed);
    _defaultStringEncoding.store(integerForKey(TD_USER_DEFAULTS_NAME_DEFAULT_STRING_ENCODING),
                                 std::memory_order_relaxed);
}

} // namespace tidemark
