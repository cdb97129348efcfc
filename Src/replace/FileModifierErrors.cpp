#include "replace/FileModifierErrors.h"

#include "foundation/LocalizedText.h"

#include <cerrno>

namespace tidemark {

namespace {

QString shortDescription()
{
    return localizedString("Sorry, a problem occured whilst attempting to modify a file.");
}

/// For failures after the file was touched.
QString longDescription()
{
    return localizedString(
        "Sorry, a problem occured whilst attempting to modify a file. You will need to restore "
        "the file from the automatic backup that was created.");
}

QString searchAgainSuggestion()
{
    return localizedString("Perform the search again to refresh the search results.");
}

QString restoreSuggestion(const FilePath &path, const FilePath &backup)
{
    return formatted(
        localizedString("To restore the file use Finder to copy file ‘%@’ to file ‘%@’. Afterwards "
                        "delete the backup file."),
        {backup.displayText(), path.displayText()});
}

QString andFileIsAsItWas(const QString &text)
{
    return text + u' ' + localizedString("The file is as it was; nothing needs to be restored.");
}

QVariantMap underlying(const TDError &error)
{
    return error ? QVariantMap{{TDError::UNDERLYING_ERROR_KEY, QVariant::fromValue(error)}} : QVariantMap();
}

TDError modifierError(qint64 code, const QString &description, const QString &reason,
                      const QString &suggestion = {}, const QVariantMap &info = {})
{
    return TDError::initalizePresentErrorWithCode(code, description, reason, suggestion, info);
}

} // namespace

TDError backupCreationError(const FilePath &path, int errorNumber)
{
    if (errorNumber == EACCES)
        return modifierError(
            TD_ERROR_CODE_TD_FILE_MODIFIER_BACKUP_FILE_CREATION_ERROR, shortDescription(),
            formatted(localizedString("Creating a temporary file for ‘%@’ was not possible due to the file "
                                      "permissions of the parent folder being too restrictive."),
                      {path.displayText()}),
            localizedString(
                "Change permissions on the parent folder for the above mentioned file such that it is "
                "permissible to create new files in the folder."));
    return modifierError(
        TD_ERROR_CODE_TD_FILE_MODIFIER_BACKUP_FILE_CREATION_ERROR, shortDescription(),
        formatted(localizedString("Creating the temporary backup file for ‘%@’ gave error number ‘%d’."),
                  {path.displayText(), errorNumber}));
}

TDError backupCopyError(const FilePath &path, const FilePath &backup, int errorNumber)
{
    return modifierError(TD_ERROR_CODE_TD_FILE_MODIFIER_BACKUP_FILE_COPY_ORIGINAL_ERROR, shortDescription(),
                         formatted(localizedString("Copying file ‘%@’ to '%@' gave error number ‘%d’."),
                                   {path.displayText(), backup.displayText(), errorNumber}),
                         {}, underlying(TDError::posixError(errorNumber, backup)));
}

TDError backupDeletionError(const FilePath &backup, int errorNumber)
{
    return modifierError(
        TD_ERROR_CODE_TD_FILE_MODIFIER_BACKUP_FILE_DELETE_ERROR, shortDescription(),
        formatted(localizedString("Deleting temporary backup file ‘%@’ gave error number ‘%d’."),
                  {backup.displayText(), errorNumber}));
}

TDError fileDoesNotExistError(const FilePath &path)
{
    return modifierError(TD_ERROR_CODE_TD_FILE_MODIFIER_FILE_NOT_EXIST_ERROR, shortDescription(),
                         formatted(localizedString("The file ‘%@’ does not exist."), {path.displayText()}),
                         searchAgainSuggestion());
}

TDError modificationDateError(const FilePath &path)
{
    return modifierError(
        TD_ERROR_CODE_TD_FILE_MODIFIER_FILE_MODIFICATION_DATE_ERROR, shortDescription(),
        formatted(localizedString("The modification date for file ‘%@’ could not be retrieved."),
                  {path.displayText()}));
}

TDError fileModifiedError(const FilePath &path)
{
    return modifierError(
        TD_ERROR_CODE_TD_FILE_MODIFIER_FILE_MODIFIED_ERROR, shortDescription(),
        formatted(localizedString("File ‘%@’ has been modified outside of this application."),
                  {path.displayText()}),
        searchAgainSuggestion());
}

TDError truncationOpenError(const FilePath &path, const FilePath &backup)
{
    const QString reason = formatted(
        localizedString("A file handler could not be opened to truncate file ‘%@’."), {path.displayText()});
    return modifierError(TD_ERROR_CODE_TD_FILE_MODIFIER_FILE_HANDLER_FOR_TRUNCATION_ERROR, longDescription(),
                         andFileIsAsItWas(reason), restoreSuggestion(path, backup));
}

TDError truncationError(const FilePath &path, FileNow fileNow)
{
    const QString reason = formatted(
        localizedString("An error occured whilst truncating file‘%@’ to zero bytes."), {path.displayText()});
    return modifierError(TD_ERROR_CODE_TD_FILE_MODIFIER_FILE_TRUNCATION_ERROR, shortDescription(),
                         fileNow == FileNow::AsItWas ? andFileIsAsItWas(reason) : reason);
}

TDError truncationCloseError(const FilePath &path)
{
    return modifierError(
        TD_ERROR_CODE_TD_FILE_MODIFIER_FILE_HANDLER_FOR_TRUNCATION_CLOSE_ERROR, shortDescription(),
        formatted(
            localizedString("An error occured whilst attempting to close the file handler for truncated file "
                            "‘%@’."),
            {path.displayText()}));
}

TDError writeError(const FilePath &path, const FilePath &backup, const QString &exception, FileNow fileNow)
{
    const QString reason = formatted(localizedString("Writing data to file ‘%@’ failed with exception '%@'."),
                                     {path.displayText(), exception});
    return modifierError(TD_ERROR_CODE_TD_FILE_MODIFIER_WRITE_DATA_ERROR, longDescription(),
                         fileNow == FileNow::AsItWas ? andFileIsAsItWas(reason) : reason,
                         restoreSuggestion(path, backup));
}

TDError fileNotWritableError(const FilePath &path)
{
    return modifierError(
        TD_ERROR_CODE_TD_FILE_MODIFIER_FILE_NOT_WRITABLE_ERROR, shortDescription(),
        formatted(localizedString("File permissions on file ‘%@’ do not allow the file to be modified."),
                  {path.displayText()}),
        localizedString(
            "Change permissions of the file or folder path such that it is permissible to update the "
            "file."));
}

TDError refusalError(const FilePath &path, RewriteProblem problem, int errorNumber)
{
    QString reason = formatted(localizedString("File ‘%@’ was left as it is."), {path.displayText()}) + u' ' +
                     textOfProblem(problem) + u'.';
    if (errorNumber != 0)
        reason += u' ' + TDError::posixError(errorNumber).localizedFailureReason() + u'.';
    return modifierError(TD_ERROR_CODE_TD_FILE_MODIFIER_REFUSED_ERROR, shortDescription(), reason);
}

} // namespace tidemark
