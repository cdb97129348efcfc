#pragma once

#include "foundation/FilePath.h"
#include "reading/EncodingDetection.h"
#include "session/EncodingSampler.h"
#include "session/FileContext.h"

#include <QDialog>

class QCheckBox;
class QLabel;
class QListWidget;
class QListWidgetItem;
class QPushButton;

namespace tidemark {

class ContextView;

/// Asks in what a file is to be read: all encodings, the likely ones first as soon as these are known, with
/// the first line that is no text as it reads in the selected one. Deletes itself when it is closed.
class ReadAsDialog : public QDialog
{
    Q_OBJECT

public:
    /// `encoding` is the one that it was tried in; so many other files couldn't be read in it either.
    ReadAsDialog(const FilePath &path, SettledEncoding encoding, quint64 othersLikeIt, QWidget *parent);

    bool isForAllLikeIt() const;

Q_SIGNALS:
    void chosen(tidemark::StringEncoding encoding, bool forAllLikeIt);

private:
    QWidget *_makePreview();
    void _list(const QList<StringEncoding> &likely);
    void _add(StringEncoding encoding);
    void _takeSample(const EncodingSample &sample);
    void _noteSelection();
    StringEncoding _selected() const;

    const FilePath _path;
    const SettledEncoding _tried;
    EncodingSampler _sampler;
    FileContext _context;
    qint64 _lineNumber = 1; ///< that the preview shows
    QListWidget *_encodings;
    ContextView *_preview = nullptr;
    QLabel *_previewTitle = nullptr;
    QCheckBox *_allLikeIt = nullptr; ///< null where there are no others
    QPushButton *_read;
};

} // namespace tidemark
