#include "window/ReadAsDialog.h"

#include "foundation/LocalizedText.h"
#include "reading/TDStringEncoding.h"
#include "window/context/ContextView.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace tidemark {

namespace {

constexpr QSize SIZE_OF_CHOICE = {640, 520};
/// Of the room of both.
constexpr int LIST_SHARE = 3;
constexpr int PREVIEW_SHARE = 2;

QLabel *makeText(const QString &text)
{
    auto *label = new QLabel(text);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    return label;
}

QString question(const FilePath &path, SettledEncoding tried)
{
    const QString name = FilePath(path.lastPathComponent()).displayText();
    const QString encoding = localizedNameOfStringEncoding(tried.encoding);
    return formatted(tried.source == EncodingSource::Chosen
                         ? localizedString("“%@” was read in %@. Which encoding is it in?")
                         : localizedString("“%@” isn't text in %@. Which encoding is it in?"),
                     {name, encoding});
}

QString textOfOthers(quint64 count, SettledEncoding tried)
{
    const QString text = count == 1
                             ? localizedString("The same for %@ &other file that couldn't be read in %@")
                             : localizedString("The same for %@ &other files that couldn't be read in %@");
    return formatted(text, {grouped(count), localizedNameOfStringEncoding(tried.encoding)});
}

} // namespace

ReadAsDialog::ReadAsDialog(const FilePath &path, SettledEncoding encoding, quint64 othersLikeIt,
                           QWidget *parent)
    : QDialog(parent), _path(path), _tried(encoding), _encodings(new QListWidget),
      _read(new QPushButton(localizedString("&Read")))
{
    setObjectName(QStringLiteral("readAsDialog"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowModality(Qt::WindowModal);
    setWindowTitle(localizedString("Read As"));
    resize(SIZE_OF_CHOICE);
    _encodings->setObjectName(QStringLiteral("encodings"));
    _encodings->setAccessibleName(localizedString("Encodings"));
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(makeText(question(path, encoding)));
    layout->addWidget(_encodings, LIST_SHARE);
    layout->addWidget(_makePreview(), PREVIEW_SHARE);
    if (othersLikeIt > 0) {
        _allLikeIt = new QCheckBox(textOfOthers(othersLikeIt, encoding));
        layout->addWidget(_allLikeIt);
    }
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Cancel);
    buttons->addButton(_read, QDialogButtonBox::AcceptRole);
    layout->addWidget(buttons);
    _read->setDefault(true);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(this, &QDialog::accepted, this, [this] { Q_EMIT chosen(_selected(), isForAllLikeIt()); });
    connect(_encodings, &QListWidget::itemDoubleClicked, _read, &QPushButton::click);
    connect(_encodings, &QListWidget::itemSelectionChanged, this, &ReadAsDialog::_noteSelection);
    connect(&_sampler, &EncodingSampler::sampled, this, &ReadAsDialog::_takeSample);
    _list({});
    _noteSelection();
    _sampler.start(_path, _tried.toReadAgain());
    _encodings->setFocus();
}

QWidget *ReadAsDialog::_makePreview()
{
    _preview = new ContextView(_context);
    _preview->setObjectName(QStringLiteral("preview"));
    _preview->setAccessibleName(localizedString("Preview"));
    _previewTitle = makeText({});
    auto *both = new QWidget;
    auto *layout = new QVBoxLayout(both);
    layout->setContentsMargins({});
    layout->addWidget(_previewTitle);
    layout->addWidget(_preview);
    return both;
}

bool ReadAsDialog::isForAllLikeIt() const
{
    return _allLikeIt != nullptr && _allLikeIt->isChecked();
}

// -- The encodings

void ReadAsDialog::_list(const QList<StringEncoding> &likely)
{
    const StringEncoding selected = _selected();
    const QSignalBlocker blocker(_encodings);
    _encodings->clear();
    for (const StringEncoding encoding : likely)
        _add(encoding);
    if (_encodings->count() > 0) {
        auto *others = new QListWidgetItem(localizedString("Other encodings:"), _encodings);
        others->setFlags(Qt::ItemIsEnabled);
    }
    for (const TDStringEncoding &encoding : TDStringEncoding::availableEncodings()) {
        if (!likely.contains(encoding.stringEncodingId()))
            _add(encoding.stringEncodingId());
    }
    for (int row = 0; row < _encodings->count(); ++row) {
        if (_encodings->item(row)->data(Qt::UserRole) == QVariant(selected))
            _encodings->setCurrentRow(row);
    }
}

void ReadAsDialog::_add(StringEncoding encoding)
{
    // It would be read in that one as it was.
    if (encoding == _tried.encoding)
        return;
    auto *item = new QListWidgetItem(localizedNameOfStringEncoding(encoding), _encodings);
    item->setData(Qt::UserRole, encoding);
}

StringEncoding ReadAsDialog::_selected() const
{
    // The keyboard makes an item current that nobody selected.
    const QList<QListWidgetItem *> selected = _encodings->selectedItems();
    return selected.isEmpty() ? TD_FILE_COMMON_UNKNOWN_ENCODING
                              : selected.first()->data(Qt::UserRole).value<StringEncoding>();
}

void ReadAsDialog::_takeSample(const EncodingSample &sample)
{
    _lineNumber = std::max(qint64(1), sample.lineNumber);
    QList<StringEncoding> likely = sample.likely;
    likely.removeOne(_tried.encoding);
    _list(likely);
    if (_encodings->selectedItems().isEmpty() && !likely.isEmpty())
        _encodings->setCurrentRow(0);
    _noteSelection();
}

/// Nothing is to be read as nothing.
void ReadAsDialog::_noteSelection()
{
    const StringEncoding encoding = _selected();
    const bool isSelected = encoding != TD_FILE_COMMON_UNKNOWN_ENCODING;
    _read->setEnabled(isSelected);
    _previewTitle->setText(
        isSelected ? formatted(localizedString("Line %lu in this encoding:"), {quint64(_lineNumber)})
                   : localizedString("Select an encoding to see what becomes of the file."));
    _context.open(_path, isSelected ? encoding : _tried.toReadAgain());
    _preview->showLine(_lineNumber, 0);
}

} // namespace tidemark
