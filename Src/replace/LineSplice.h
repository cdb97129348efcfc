#pragma once

#include "text/TextEncoding.h"
#include "text/TextRange.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QList>
#include <QStringView>

#include <optional>
#include <vector>

namespace tidemark {

/// A stretch of a text and what stands in its place in the new one. Around all edits of a text the two are
/// the same.
struct TextEdit
{
    TextRange oldRange;
    TextRange newRange;
};

/// The stretches that differ, in order. The ranges are those of the matches in either text, pair by pair.
/// They are asked first, as the texts alone can't tell which of two equal characters stayed: replacing "x" by
/// "a" in "axa" might as well have put the new one first. Where the texts don't bear the ranges out, the edit
/// is all between their common start and their common end.
std::vector<TextEdit> textEdits(QStringView oldText, QStringView newText, const QList<TextRange> &oldRanges,
                                const QList<TextRange> &newRanges);

/// The line's bytes with only the edits encoded; everything else is copied, so that characters with two codes
/// keep the one they have. An encoding with states is left and entered again as it stood there. A code of
/// several characters that an edit parts is encoded anew if it is the code that encoding gives. Nothing when
/// the bytes can't be taken apart or the encoding can't hold the new text; the caller has to check that the
/// result stands for the new text.
std::optional<QByteArray> splicedLine(TextConverter &converter, QByteArrayView oldBytes, QStringView oldText,
                                      QStringView newText, const std::vector<TextEdit> &edits);

} // namespace tidemark
