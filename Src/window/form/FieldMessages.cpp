#include "window/form/FieldMessages.h"

#include "foundation/AbandonableWork.h"
#include "foundation/LocalizedText.h"
#include "foundation/UserDefaults.h"
#include "replace/TDReplacement.h"
#include "session/MyDocument.h"
#include "ui_MyDocument.h"

namespace tidemark {

namespace {

/// Typing goes on; whatever takes longer to compile shows itself when the search starts.
constexpr std::chrono::milliseconds LONGEST_WAIT(100);
constexpr QChar CARET = u'\x2038';
constexpr qsizetype SHOWN_AROUND_CARET = 16;

struct Faults
{
    std::optional<TextFault> ofFindText;
    std::optional<TextFault> ofReplaceText;
};

Faults faultsOf(const QString &findText, const QString &replaceText, const FindOptions &options)
{
    if (options.mode == SearchMode::PlainText || findText.isEmpty())
        return {};
    Faults faults;
    faults.ofFindText = TDFindPattern(findText, options).fault();
    if (!faults.ofFindText && options.mode == SearchMode::UnicodeExpression)
        faults.ofReplaceText =
            TDReplacement(findText, replaceText, options, ReplacementExtent::EveryOccurrence).formatFault();
    return faults;
}

void show(ElidedLabel *label, const std::optional<TextFault> &fault, const QString &text)
{
    label->setWholeText(fault ? FieldMessages::messageFor(*fault, text) : QString());
    label->setVisible(fault.has_value());
}

} // namespace

FieldMessages::FieldMessages(MyDocument &document, Ui::MyDocument &ui, QObject *parent)
    : QObject(parent), _document(document), _ui(ui)
{
    for (ElidedLabel *label : {ui.findMessageLabel, ui.replaceMessageLabel}) {
        QFont font = label->font();
        font.setPointSizeF(font.pointSizeF() * 0.9);
        label->setFont(font);
    }
    connect(&document, &MyDocument::findTextChanged, this, &FieldMessages::_check);
    connect(&document, &MyDocument::replaceTextChanged, this, &FieldMessages::_check);
    connect(&UserDefaults::standard(), &UserDefaults::valueChanged, this, [this](const QString &key) {
        if (key == TD_USER_DEFAULTS_NAME_REGULAR_EXPRESSION ||
            key == TD_USER_DEFAULTS_NAME_UNICODE_REGULAR_EXPRESSION)
            _check();
    });
    _check();
}

QString FieldMessages::messageFor(const TextFault &fault, const QString &text)
{
    const qsizetype start = qMax(qsizetype(0), fault.position - SHOWN_AROUND_CARET);
    const QString around =
        text.mid(start, fault.position - start) + CARET + text.mid(fault.position, SHOWN_AROUND_CARET);
    return formatted(localizedString("At character %d: %@"), {fault.position + 1, fault.message}) +
           QStringLiteral("   ") + around.simplified();
}

void FieldMessages::tellIfFindTextIsMissing()
{
    if (!_document.findText().isEmpty())
        return;
    _ui.findMessageLabel->setWholeText(localizedString("Type what to find first."));
    _ui.findMessageLabel->show();
}

void FieldMessages::_check()
{
    const QString findText = _document.findText();
    const QString replaceText = _document.replaceText();
    const auto check = [findText, replaceText, options = FindOptions::withUserDefaults()] {
        return faultsOf(findText, replaceText, options);
    };
    const bool isExpression = UserDefaults::standard().boolFor(BooleanSetting::RegularExpression);
    const Faults faults =
        isExpression ? resultOfAbandonable(check, LONGEST_WAIT).value_or(Faults()) : Faults();
    show(_ui.findMessageLabel, faults.ofFindText, findText);
    show(_ui.replaceMessageLabel, faults.ofReplaceText, replaceText);
}

} // namespace tidemark
