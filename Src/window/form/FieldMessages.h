#pragma once

#include "matching/UnicodeExpression.h"

#include <QObject>
#include <QString>

#include <optional>

namespace Ui {
class MyDocument;
}

namespace tidemark {

class MyDocument;

/// Tells under the Find and Replace fields, while the person types, what is wrong with an expression or a
/// format, with the place marked by a caret; and after a search that there was nothing to search for.
class FieldMessages : public QObject
{
    Q_OBJECT

public:
    /// Both must outlive the object.
    FieldMessages(MyDocument &document, Ui::MyDocument &ui, QObject *parent = nullptr);

    void tellIfFindTextIsMissing();

    static QString messageFor(const TextFault &fault, const QString &text);

private:
    void _check();

    MyDocument &_document;
    Ui::MyDocument &_ui;
};

} // namespace tidemark
