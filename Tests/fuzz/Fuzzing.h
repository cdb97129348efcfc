#pragma once

#include "foundation/FilePath.h"
#include "text/TextEncoding.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

namespace tidemark::fuzz {

/// The bytes of one execution, from which a target takes what it needs. Everything is possible with every
/// input: what isn't there any more is 0 or empty.
class Input
{
public:
    explicit Input(QByteArrayView bytes) : _bytes(bytes) {}

    unsigned below(unsigned limit);
    bool flag() { return below(2) == 1; }
    /// Up to and without the next line feed, or the rest: keeps what is searched for readable in the corpus.
    QByteArray line();
    QByteArray rest() { return _take(_bytes.size()); }
    /// Some of the bytes there are.
    QByteArray some();
    /// Any that can be decoded.
    StringEncoding encoding();
    bool isEmpty() const { return _bytes.isEmpty(); }

private:
    QByteArray _take(qsizetype count);

    QByteArrayView _bytes;
};

/// What a target does with an input; each program has one.
void run(Input &input);

/// Ends the program with a report unless the condition holds.
void require(bool holds, const char *condition, const QByteArray &detail = {});

/// Measures what this thread computes, whatever else the machine does.
class TimeLimit
{
public:
    TimeLimit();
    /// Ends the program when more time was spent than the code under test has, which is slow with everything
    /// that is compiled into it.
    void check(const char *what, double seconds) const;

private:
    double _start;
};

/// A file in the program's own temporary folder, in memory where there is one.
FilePath writeFile(const QByteArray &name, const QByteArray &content);
FilePath folder();
QByteArray contentOf(const FilePath &path);

} // namespace tidemark::fuzz
