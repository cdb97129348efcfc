#include "window/Colors.h"

#include <QPalette>

#include <algorithm>
#include <cmath>

namespace tidemark {

namespace {

constexpr double FAINTEST = 0.55;
constexpr double STEP = 0.05;

double linear(float component)
{
    constexpr double LAST_STRAIGHT = 0.04045;
    const double value = double(component);
    return value <= LAST_STRAIGHT ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

double luminance(const QColor &color)
{
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

} // namespace

double contrastRatio(const QColor &one, const QColor &other)
{
    constexpr double FLARE = 0.05;
    const auto [darker, lighter] = std::minmax({luminance(one), luminance(other)});
    return (lighter + FLARE) / (darker + FLARE);
}

QColor mixed(const QColor &over, const QColor &under, double share)
{
    const auto component = [share](int top, int bottom) {
        return int(std::lround(share * top + (1 - share) * bottom));
    };
    return QColor(component(over.red(), under.red()), component(over.green(), under.green()),
                  component(over.blue(), under.blue()));
}

QColor secondaryColor(const QColor &text, const QColor &background)
{
    for (double share = FAINTEST; share < 1; share += STEP) {
        const QColor faint = mixed(text, background, share);
        if (contrastRatio(faint, background) >= READABLE_CONTRAST)
            return faint;
    }
    return text;
}

bool isDark(const QPalette &palette)
{
    return palette.color(QPalette::Base).lightnessF() < 0.5F;
}

QColor errorColor(const QPalette &palette)
{
    const QColor red = isDark(palette) ? QColor(0xFF, 0x9A, 0x96) : QColor(0xA4, 0x26, 0x2C);
    const bool isReadable = contrastRatio(red, palette.color(QPalette::Base)) >= READABLE_CONTRAST;
    return isReadable ? red : palette.color(QPalette::Text);
}

QColor linkColor(const QColor &text, const QColor &background)
{
    for (const QColor &blue : {QColor(0x1A, 0x56, 0xB0), QColor(0x7A, 0xB8, 0xFF)}) {
        if (contrastRatio(blue, background) >= READABLE_CONTRAST)
            return blue;
    }
    return text;
}

} // namespace tidemark
