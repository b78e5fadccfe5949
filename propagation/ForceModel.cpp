#include "ForceModel.h"

#include <vorbel/CVorbel.h>

fVector CVorbel::right(const fVector& state) const {
    return vorbel::derivative(state, m_iSystem);
}
