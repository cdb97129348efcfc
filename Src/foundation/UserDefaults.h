#pragma once

#include "foundation/TDConstantsUserDefaults.h"

#include <QHash>
#include <QObject>
#include <QReadWriteLock>
#include <QVariant>

#include <array>
#include <atomic>
#include <memory>

class QSettings;

namespace tidemark {

/// Settings that are read while searching; reading one is a single atomic load.
enum class BooleanSetting {
    RegularExpression,
    UnicodeRegularExpression,
    WholeWords,
    IgnoreCase,
    AutoDetectFileEncoding,
    CreateBackupBeforeReplacing
};

/// The per-user store of settings: stored values, and registered ones that apply where nothing is stored.
/// Reading is safe from any thread; writing and the signal belong to the main thread. A stored value of a
/// type that doesn't fit its key counts as not stored.
class UserDefaults : public QObject
{
    Q_OBJECT

public:
    /// A store that lives in memory only.
    static std::unique_ptr<UserDefaults> inMemory();
    /// A store kept in the file, which is replaced as a whole when it is written and need not exist yet. A
    /// damaged file counts as empty. When it is written, only its owner may read it.
    static std::unique_ptr<UserDefaults> atPath(const QString &filePath);
    /// Where the application keeps the user's settings.
    static QString userFilePath();

    /// The store that everything uses: in memory until setStandard() is called.
    static UserDefaults &standard();
    static void setStandard(std::unique_ptr<UserDefaults> store);

    ~UserDefaults() override;

    void registerDefaults(const QVariantMap &values);

    /// Invalid when the key is neither stored nor registered.
    QVariant objectForKey(const QString &key) const;
    bool boolForKey(const QString &key) const;
    qint64 integerForKey(const QString &key) const;
    QString stringForKey(const QString &key) const;
    /// The integer under TD_USER_DEFAULTS_NAME_DEFAULT_STRING_ENCODING, read like the settings above.
    qint64 defaultStringEncoding() const { return _defaultStringEncoding.load(std::memory_order_relaxed); }
    bool boolFor(BooleanSetting setting) const
    {
        return _booleans[static_cast<size_t>(setting)].load(std::memory_order_relaxed);
    }

    /// An invalid value removes the stored one.
    void setObject(const QString &key, const QVariant &value);
    /// Writes what isn't written yet; false when that failed.
    bool synchronize();

Q_SIGNALS:
    void valueChanged(const QString &key);

private:
    explicit UserDefaults(std::unique_ptr<QSettings> file);
    QVariant _firstFitting(const QString &key, bool (*fits)(const QVariant &)) const;
    void _refreshCachedSettings();

    mutable QReadWriteLock _lock;
    QHash<QString, QVariant> _stored;
    QHash<QString, QVariant> _registered;
    std::array<std::atomic<bool>, 6> _booleans = {};
    std::atomic<qint64> _defaultStringEncoding = 0;
    std::unique_ptr<QSettings> _file; ///< null for a store in memory
};

} // namespace tidemark
