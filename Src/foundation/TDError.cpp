#include "foundation/TDError.h"

#include "foundation/LocalizedText.h"

#include <stdexcept>
#include <system_error>

namespace tidemark {

const QString TDError::DESCRIPTION_KEY = QStringLiteral("NSLocalizedDescription");
const QString TDError::FAILURE_REASON_KEY = QStringLiteral("NSLocalizedFailureReason");
const QString TDError::RECOVERY_SUGGESTION_KEY = QStringLiteral("NSLocalizedRecoverySuggestion");
const QString TDError::FILE_PATH_KEY = QStringLiteral("NSFilePath");
const QString TDError::UNDERLYING_ERROR_KEY = QStringLiteral("NSUnderlyingError");

TDError TDError::initalizePresentErrorWithCode(qint64 code, const QString &localizedDescription,
                                               const QString &localizedFailureReason,
                                               const QString &localizedRecoverySuggestion,
                                               QVariantMap errorInfo)
{
    if (localizedDescription.isNull() || localizedFailureReason.isNull())
        throw std::invalid_argument("an error needs a description and a failure reason");
    // The code line shows 32 bits; the error itself carries all 64.
    const QString text = localizedDescription + QStringLiteral("\n\n") + localizedFailureReason +
                         QStringLiteral("\n\nError Code: ") + QString::number(static_cast<qint32>(code));
    errorInfo[DESCRIPTION_KEY] = text;
    errorInfo[FAILURE_REASON_KEY] = localizedFailureReason;
    errorInfo[RECOVERY_SUGGESTION_KEY] =
        localizedRecoverySuggestion.isNull()
            ? localizedString("For assistance, please contact Velkor via the Velkor website.")
            : localizedRecoverySuggestion;

    TDError error;
    error._data = std::make_shared<const Data>(Data{TD_ERROR_DOMAIN, code, std::move(errorInfo)});
    return error;
}

TDError TDError::posixError(int errorNumber, const FilePath &path, const QString &failureReason)
{
    const QString systemText = QString::fromStdString(std::generic_category().message(errorNumber));
    QVariantMap info;
    info[FAILURE_REASON_KEY] = failureReason.isNull() ? systemText : failureReason;
    info[DESCRIPTION_KEY] =
        failureReason.isNull() ? systemText : failureReason + QStringLiteral("\n\n") + systemText;
    if (!path.isEmpty())
        info[FILE_PATH_KEY] = QVariant::fromValue(path);

    TDError error;
    error._data = std::make_shared<const Data>(Data{TD_POSIX_ERROR_DOMAIN, errorNumber, std::move(info)});
    return error;
}

TDError TDError::osStatusError(qint64 status)
{
    TDError error;
    error._data = std::make_shared<const Data>(Data{TD_OS_STATUS_ERROR_DOMAIN, status, {}});
    return error;
}

QString TDError::domain() const
{
    return _data ? _data->domain : QString();
}

qint64 TDError::code() const
{
    return _data ? _data->code : 0;
}

QVariantMap TDError::userInfo() const
{
    return _data ? _data->userInfo : QVariantMap();
}

QString TDError::text(const QString &key) const
{
    return _data ? _data->userInfo.value(key).toString() : QString();
}

QString TDError::localizedDescription() const
{
    return text(DESCRIPTION_KEY);
}

QString TDError::localizedFailureReason() const
{
    return text(FAILURE_REASON_KEY);
}

QString TDError::localizedRecoverySuggestion() const
{
    return text(RECOVERY_SUGGESTION_KEY);
}

bool TDError::hasCode(qint64 code) const
{
    return _data && _data->code == code && _data->domain == TD_ERROR_DOMAIN;
}

} // namespace tidemark
