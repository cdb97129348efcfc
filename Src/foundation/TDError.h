#pragma once

#include "foundation/FilePath.h"

#include <QString>
#include <QVariantMap>

#include <memory>

namespace tidemark {

/// The domain of every error that is shown to the user: the application's bundle identifier.
inline const QString TD_ERROR_DOMAIN = QStringLiteral("com.velkor.Tidemark");
/// The domain of low-level failures, whose code is `errno`.
inline const QString TD_POSIX_ERROR_DOMAIN = QStringLiteral("NSPOSIXErrorDomain");
/// The domain of the platform's own status codes.
inline const QString TD_OS_STATUS_ERROR_DOMAIN = QStringLiteral("NSOSStatusErrorDomain");
inline constexpr qint64 TD_OS_STATUS_NOT_IMPLEMENTED = -4;

inline constexpr qint64 TD_ERROR_CODE_TD_FILE_READER_FILE_OPEN_ERROR = 1;
inline constexpr qint64 TD_ERROR_CODE_TD_FILE_READER_FILE_DOES_NOT_EXIST = 2;
inline constexpr qint64 TD_ERROR_CODE_TD_FILE_READER_FILE_CLOSE_ERROR = 3;
inline constexpr qint64 TD_ERROR_CODE_TD_FILE_READER_FILE_ENCODING_ERROR = 4;
inline constexpr qint64 TD_ERROR_CODE_TD_FILE_MODIFIER_BACKUP_FILE_CREATION_ERROR = 25;
inline constexpr qint64 TD_ERROR_CODE_TD_FILE_MODIFIER_BACKUP_FILE_COPY_ORIGINAL_ERROR = 26;
inline constexpr qint64 TD_ERROR_CODE_TD_FILE_MODIFIER_BACKUP_FILE_DELETE_ERROR = 27;
inline constexpr qint64 TD_ERROR_CODE_TD_FILE_MODIFIER_FILE_NOT_EXIST_ERROR = 28;
inline constexpr qint64 TD_ERROR_CODE_TD_FILE_MODIFIER_FILE_MODIFICATION_DATE_ERROR = 29;
inline constexpr qint64 TD_ERROR_CODE_TD_FILE_MODIFIER_FILE_MODIFIED_ERROR = 30;
inline constexpr qint64 TD_ERROR_CODE_TD_FILE_MODIFIER_FILE_HANDLER_FOR_TRUNCATION_ERROR = 31;
inline constexpr qint64 TD_ERROR_CODE_TD_FILE_MODIFIER_FILE_TRUNCATION_ERROR = 32;
inline constexpr qint64 TD_ERROR_CODE_TD_FILE_MODIFIER_FILE_HANDLER_FOR_TRUNCATION_CLOSE_ERROR = 33;
inline constexpr qint64 TD_ERROR_CODE_TD_FILE_MODIFIER_WRITE_DATA_ERROR = 34;
inline constexpr qint64 TD_ERROR_CODE_TD_FILE_MODIFIER_FILE_NOT_WRITABLE_ERROR = 35;
inline constexpr qint64 TD_ERROR_CODE_TD_MATCH_LINE_HIGHLIGHTER_REGULAR_EXPRESSION_ERROR = 36;
inline constexpr qint64 TD_ERROR_CODE_TD_FILE_MODIFIER_REFUSED_ERROR = 37;

/// What went wrong, as a value: null when nothing did. A null error costs one pointer; copies share.
/// Functions that can fail take one as their last parameter and say by it why they returned nothing.
class TDError
{
public:
    /// Keys of the information dictionary.
    static const QString DESCRIPTION_KEY;
    static const QString FAILURE_REASON_KEY;
    static const QString RECOVERY_SUGGESTION_KEY;
    static const QString FILE_PATH_KEY;
    static const QString UNDERLYING_ERROR_KEY;

    TDError() = default;

    /// An error of TD_ERROR_DOMAIN. The texts are already localised. The description that the error carries
    /// is the given one, the failure reason and a line with the code, separated by blank lines; without a
    /// suggestion the error suggests asking the maker. `errorInfo` keeps its other entries.
    /// Throws std::invalid_argument when the description or the failure reason is null.
    static TDError initalizePresentErrorWithCode(qint64 code, const QString &localizedDescription,
                                                 const QString &localizedFailureReason,
                                                 const QString &localizedRecoverySuggestion = {},
                                                 QVariantMap errorInfo = {});

    /// An error of TD_POSIX_ERROR_DOMAIN. Without texts of its own its failure reason is the system's text
    /// for the number. `path` is kept under FILE_PATH_KEY when there is one.
    static TDError posixError(int errorNumber, const FilePath &path = {}, const QString &failureReason = {});

    /// An error of TD_OS_STATUS_ERROR_DOMAIN, without texts.
    static TDError osStatusError(qint64 status);

    bool isNull() const { return _data == nullptr; }
    explicit operator bool() const { return _data != nullptr; }
    void clear() { _data.reset(); }

    /// Each is empty, or 0, on a null error.
    QString domain() const;
    qint64 code() const;
    QVariantMap userInfo() const;
    QString localizedDescription() const;
    QString localizedFailureReason() const;
    QString localizedRecoverySuggestion() const;

    /// True for an error of TD_ERROR_DOMAIN with this code.
    bool hasCode(qint64 code) const;

private:
    struct Data
    {
        QString domain;
        qint64 code = 0;
        QVariantMap userInfo;
    };
    QString text(const QString &key) const;

    std::shared_ptr<const Data> _data;
};

} // namespace tidemark

Q_DECLARE_METATYPE(tidemark::TDError)
