#include "text/StringComparison.h"

#include <unicode/unorm.h>

#include <algorithm>
#include <stdexcept>

namespace tidemark {

namespace {

/// Below it nothing decomposes, nothing is moved by a mark, and no mark begins.
constexpr char16_t FIRST_DECOMPOSABLE = 0x00C0;

int compareDecomposed(QStringView left, QStringView right)
{
    UErrorCode status = U_ZERO_ERROR;
    const int order = unorm_compare(left.utf16(), int32_t(left.size()), right.utf16(), int32_t(right.size()),
                                    U_COMPARE_CODE_POINT_ORDER, &status);
    if (U_FAILURE(status))
        throw std::runtime_error(u_errorName(status));
    return order;
}

} // namespace

int compare(QStringView left, QStringView right)
{
    const qsizetype shorter = std::min(left.size(), right.size());
    const qsizetype common =
        std::mismatch(left.begin(), left.begin() + shorter, right.begin()).first - left.begin();
    if (common == left.size() && common == right.size())
        return 0;
    if (left.isEmpty() || right.isEmpty())
        return left.isEmpty() ? -1 : 1;
    const auto unitOrNone = [common](QStringView text) {
        return common < text.size() ? int(text[common].unicode()) : -1;
    };
    const int leftUnit = unitOrNone(left);
    const int rightUnit = unitOrNone(right);
    if (leftUnit < FIRST_DECOMPOSABLE && rightUnit < FIRST_DECOMPOSABLE)
        return leftUnit - rightUnit;
    return compareDecomposed(left, right);
}

} // namespace tidemark
