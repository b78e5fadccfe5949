// What an application does with the installed readers: read vectors, make an orbit of them, read a refusal.

#include <vorbel/products/OrbitFile.h>
#include <vorbel/products/Product.h>
#include <vorbel/scene/Orbit.h>

#include <cmath>
#include <cstdio>
#include <stdexcept>

using namespace vorbel;

int main() {
    const products::OrbitFile file = products::parseOrbitFile(
        "time,x,y,z,vx,vy,vz\n"
        "2022-08-28T04:22:02,-6312852.452361,-2637037.139719,1799869.071748,1134.789867,2211.504839,7180.118588\n"
        "2022-08-28T04:22:12,-6301134.562088,-2614783.077880,1871567.223895,1208.773135,2239.247995,7159.376815\n",
        "table");
    const scene::State state = scene::Orbit::fromVectors(file.vectors).at(5.0);
    const double distance = std::hypot(state.x, state.y, state.z);
    std::printf("%.3f m from the Earth's centre\n", distance);
    try {
        products::makeProduct(products::parseAnnotation("<product>", "cut.xml"));
    } catch (const std::runtime_error& refusal) {
        std::printf("%s\n", refusal.what());
        return distance > 7.06e6 && distance < 7.08e6 ? 0 : 1;
    }
    return 1;
}
