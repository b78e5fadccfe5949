#include "Polynomials.h"

namespace vorbel::scene {

Polynomial interpolate(std::span<const Condition> conditions) {
    // Row by row of the table of divided differences; difference[k] ends as that of the first k + 1 conditions.
    Polynomial difference{};
    Polynomial row{};
    for (std::size_t i = 0; i < conditions.size(); ++i) {
        const Condition& condition = conditions[i];
        double last = condition.derivative ? conditions[i - 1].value : condition.value;
        for (std::size_t k = 1; k <= i; ++k) {
            const double distance = condition.u - conditions[i - k].u;
            const double next = condition.derivative && k == 1 ? condition.value : (last - row[k - 1]) / distance;
            row[k - 1] = last;
            last = next;
        }
        row[i] = last;
        difference[i] = last;
    }

    // From Newton's form to powers of u
    Polynomial polynomial{};
    for (std::size_t i = conditions.size(); i-- > 0;) {
        for (std::size_t k = polynomial.size() - 1; k > 0; --k) {
            polynomial[k] = polynomial[k - 1] - conditions[i].u * polynomial[k];
        }
        polynomial[0] = difference[i] - conditions[i].u * polynomial[0];
    }
    return polynomial;
}

Polynomial derivative(const Polynomial& polynomial) {
    Polynomial result{};
    for (std::size_t k = 1; k < polynomial.size(); ++k) {
        result[k - 1] = static_cast<double>(k) * polynomial[k];
    }
    return result;
}

}  // namespace vorbel::scene
