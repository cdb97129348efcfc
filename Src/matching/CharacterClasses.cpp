#include "matching/CharacterClasses.h"

#define PCRE2_CODE_UNIT_WIDTH 8
#include <pcre2.h>

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

namespace tidemark {

namespace {

constexpr size_t MOST_PIECES = 16;
/// More make the block matcher slow.
constexpr size_t MOST_RUNS = 100;
/// Beyond it there is hardly anything, which is taken to belong to every class.
constexpr char32_t LAST_LOOKED_AT = 0x323FF;
constexpr char32_t LAST_CHARACTER = 0x10FFFF;
constexpr char32_t FIRST_BEYOND_ASCII = 0x80;

/// The first and the last character, both included.
using Run = std::pair<char32_t, char32_t>;

constexpr Run SURROGATES = {0xD800, 0xDFFF};
constexpr Run NOT_IN_LINES[] = {{'\n', '\n'}, {'\r', '\r'}, SURROGATES};

char *appended(char *end, char32_t character)
{
    if (character < FIRST_BEYOND_ASCII) {
        *end++ = char(character);
        return end;
    }
    const int following = character < 0x800 ? 1 : character < 0x10000 ? 2 : 3;
    *end++ = char(0xFF80U >> following | character >> 6 * following);
    for (int index = following - 1; index >= 0; --index)
        *end++ = char(0x80 | (character >> 6 * index & 0x3F));
    return end;
}

/// Made without a detour through UTF-16, since whoever starts a search waits for them.
QByteArray charactersLookedAt()
{
    QByteArray all(qsizetype(LAST_LOOKED_AT + 1) * 4, Qt::Uninitialized);
    char *end = all.data();
    for (char32_t character = 0; character <= LAST_LOOKED_AT; ++character) {
        if (character < SURROGATES.first || character > SURROGATES.second)
            end = appended(end, character);
    }
    all.truncate(end - all.constData());
    return all;
}

char32_t codePointAt(const QByteArray &utf8, size_t position)
{
    const auto byte = [&](size_t index) { return static_cast<unsigned char>(utf8[qsizetype(index)]); };
    const unsigned lead = byte(position);
    if (lead < 0x80)
        return lead;
    const int following = lead < 0xE0 ? 1 : lead < 0xF0 ? 2 : 3;
    char32_t character = lead & (0x3FU >> following);
    for (int index = 1; index <= following; ++index)
        character = character << 6 | (byte(position + size_t(index)) & 0x3F);
    return character;
}

char32_t characterBefore(const QByteArray &utf8, size_t end)
{
    size_t start = end - 1;
    while ((utf8[qsizetype(start)] & 0xC0) == 0x80)
        --start;
    return codePointAt(utf8, start);
}

void addRun(std::vector<Run> &runs, Run run)
{
    for (const auto &[first, last] : NOT_IN_LINES) {
        if (run.first <= first && run.second >= last) {
            if (run.first < first)
                runs.emplace_back(run.first, first - 1);
            run.first = last + 1;
        }
    }
    if (run.first <= run.second)
        runs.push_back(run);
}

/// The runs of neighbouring characters in `all` that the code matches.
std::vector<Run> runsOf(const pcre2_code *code, const QByteArray &all)
{
    const std::unique_ptr<pcre2_match_data, decltype(&pcre2_match_data_free)> data(
        pcre2_match_data_create(1, nullptr), pcre2_match_data_free);
    const auto *const text = reinterpret_cast<PCRE2_SPTR>(all.constData());
    const PCRE2_SIZE *const found = pcre2_get_ovector_pointer(data.get());
    std::vector<Run> runs;
    for (PCRE2_SIZE from = 0; pcre2_match(code, text, PCRE2_SIZE(all.size()), from, PCRE2_NO_UTF_CHECK,
                                          data.get(), nullptr) >= 0 &&
                              found[1] > found[0];
         from = found[1])
        addRun(runs, {codePointAt(all, found[0]), characterBefore(all, found[1])});
    return runs;
}

void appendRun(QByteArray &set, Run run)
{
    set += "\\x{" + QByteArray::number(run.first, 16) + '}';
    if (run.second > run.first)
        set += "-\\x{" + QByteArray::number(run.second, 16) + '}';
}

QByteArray setOf(const std::vector<Run> &runs)
{
    QByteArray set = "[";
    char32_t firstOfRest = LAST_LOOKED_AT + 1;
    for (const Run &run : runs) {
        if (runs.size() > MOST_RUNS && run.second >= FIRST_BEYOND_ASCII) {
            firstOfRest = std::min(run.first, FIRST_BEYOND_ASCII);
            break;
        }
        appendRun(set, run);
    }
    appendRun(set, {firstOfRest, LAST_CHARACTER});
    return set + ']';
}

} // namespace

std::optional<QByteArray> CharacterClasses::explicitSet(std::string_view piece)
{
    auto known = _known.find(piece);
    if (known == _known.end()) {
        if (_known.size() == MOST_PIECES)
            return {};
        known = _known.emplace(piece, _made(piece)).first;
    }
    return known->second;
}

std::optional<QByteArray> CharacterClasses::_made(std::string_view piece)
{
    const std::string repeated = std::string(piece) + '+';
    const uint32_t options = PCRE2_UTF | PCRE2_UCP | PCRE2_NEVER_BACKSLASH_C |
                             (_caseRule == CaseRule::Ignore ? PCRE2_CASELESS : 0);
    int error = 0;
    PCRE2_SIZE offset = 0;
    const std::unique_ptr<pcre2_code, decltype(&pcre2_code_free)> code(
        pcre2_compile(reinterpret_cast<PCRE2_SPTR>(repeated.data()), repeated.size(), options, &error,
                      &offset, nullptr),
        pcre2_code_free);
    if (!code)
        return {};
    (void)pcre2_jit_compile(code.get(), PCRE2_JIT_COMPLETE);
    if (_characters.isEmpty())
        _characters = charactersLookedAt();
    const std::vector<Run> runs = runsOf(code.get(), _characters);
    return runs.empty() ? std::nullopt : std::optional(setOf(runs));
}

} // namespace tidemark
