#include <vorbel/CVorbel.h>

#include <cmath>

namespace {

// Adding a step to a running sum moves the sum for at least this many steps.
constexpr double kMostSteps = 0x1p52;

}  // namespace

fVector CVorbel::prog(double dInterval) {
    double h = m_dStep;
    if ((dInterval < 0.0 && h > 0.0) || (dInterval > 0.0 && h < 0.0)) {
        h = -h;
    }
    // The product of a long step overflows. A finite interval then still holds fewer steps than the limit.
    const bool endless = std::isinf(dInterval) && std::isfinite(h);
    if (endless || std::abs(dInterval) > kMostSteps * std::abs(h)) {
        return m_afVector[0];
    }

    adamsR(m_afVector[0], h);
    double sum = 0.0;
    do {
        adams(m_afVector[0], h);
        sum = sum + h;
    } while (std::abs(dInterval) > std::abs(sum));
    return m_afVector[0];
}
