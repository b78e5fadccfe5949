#include <vorbel/scene/Status.h>

const char* vorbel::scene::name(Status status) noexcept {
    switch (status) {
    case Status::ok:
        return "ok";
    case Status::layover:
        return "layover";
    case Status::bad_input:
        return "bad_input";
    case Status::outside_orbit:
        return "outside_orbit";
    case Status::range_too_short:
        return "range_too_short";
    case Status::beyond_horizon:
        return "beyond_horizon";
    case Status::not_converged:
        return "not_converged";
    case Status::outside_terrain:
        return "outside_terrain";
    case Status::hole_in_terrain:
        return "hole_in_terrain";
    case Status::wrong_side:
        return "wrong_side";
    case Status::hidden:
        return "hidden";
    }
    return "unknown";
}
