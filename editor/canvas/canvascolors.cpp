#include "canvascolors.h"

#include <array>
#include <cctype>

namespace {

/// How much of the text colour shines through in grid lines.
double const kFaintLine = 0.04;
double const kStrongLine = 0.09;

// Hues that people tell apart side by side; the uid of a type picks one and a lightness.
std::array<int, 12> const kTypeHues = {4, 24, 42, 68, 104, 146, 172, 194, 214, 246, 280, 324};
int const kLightnesses = 2;

/// Stays the same from run to run, unlike the toolkit's hashes.
unsigned int HashUid(std::string const& uid)
{
    unsigned int hash = 2166136261u;
    for (char const character : uid)
        hash =
            (hash ^ static_cast<unsigned int>(std::toupper(static_cast<unsigned char>(character))))
            * 16777619u;
    return hash ^ (hash >> 15);
}

} // namespace

QColor MixColors(QColor const& ground, QColor const& ink, double share)
{
    auto const mix = [share](int from, int to) {
        return from + qRound(share * (to - from));
    };
    return QColor(mix(ground.red(), ink.red()), mix(ground.green(), ink.green()),
                  mix(ground.blue(), ink.blue()));
}

QColor GetTypeColor(std::string const& type, std::string const& typeName, bool isDark)
{
    if (type.empty() || typeName.empty() || typeName == "Any")
        return isDark ? QColor(165, 170, 178) : QColor(126, 132, 140);
    unsigned int const hash = HashUid(type);
    int const hue = kTypeHues[hash % kTypeHues.size()];
    int const step = static_cast<int>(hash / kTypeHues.size() % kLightnesses);
    return isDark ? QColor::fromHsl(hue, 150, 150 + 24 * step)
                  : QColor::fromHsl(hue, 165, 96 + 24 * step);
}

CanvasColors::CanvasColors(QPalette const& palette)
{
    QColor const window = palette.color(QPalette::Window);
    text = palette.color(QPalette::WindowText);
    isDark = window.lightness() < text.lightness();
    ground = isDark ? MixColors(window, Qt::black, 0.42) : MixColors(window, Qt::black, 0.03);
    faintLine = MixColors(ground, text, kFaintLine);
    strongLine = MixColors(ground, text, kStrongLine);
    nodeBody = isDark ? MixColors(window, Qt::white, 0.02) : QColor(Qt::white);
    nodeBorder = isDark ? MixColors(window, Qt::black, 0.55) : MixColors(window, Qt::black, 0.32);
    shadow = QColor(0, 0, 0, isDark ? 60 : 26);
    dimText = MixColors(nodeBody, text, 0.66);
    selection = palette.color(QPalette::Highlight);
    refusal = isDark ? QColor(240, 98, 88) : QColor(206, 44, 36);
    double const strength = isDark ? 0.42 : 0.26;
    compoundTint = MixColors(nodeBody, QColor(64, 138, 222), strength);
    solverTint = MixColors(nodeBody, QColor(126, 134, 148), strength);
    constantTint = MixColors(nodeBody, QColor(74, 168, 92), strength);
    portsTint = MixColors(nodeBody, QColor(150, 104, 208), strength);
    missingTint = MixColors(nodeBody, QColor(220, 66, 56), strength);
}
