// Reads any bytes as an annotation, an orbit file and a table. A sanitizer or a check below stops at: a fault in
// memory, a reader that ends otherwise than with a record or a sentence, a position outside the image.

#include <vorbel/products/Product.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <string_view>
#include <utility>

using namespace vorbel::products;

namespace {

void require(bool condition, const char* what) {
    if (!condition) {
        std::fprintf(stderr, "%s\n", what);
        std::abort();
    }
}

/// Calls a reader, which may refuse what it reads.
template <class Read>
void attempt(Read read) {
    try {
        read();
    } catch (const std::runtime_error& refused) {
        const std::string_view sentence = refused.what();
        require(!sentence.empty() && sentence.find('\n') == std::string_view::npos, "not one sentence");
    }
}

void useMapping(const Annotation& a, const PixelMapping& mapping) {
    for (const double part : {0.0, 0.001, 0.4, 0.77, 1.0}) {
        const ImagePosition there{part * (a.lines - 1), (1 - part) * (a.samples - 1)};
        const RadarPosition radar = mapping.toRadar(there);
        const ImagePositions back = mapping.toImage(radar);
        require(back.count >= 0 && back.count <= 2, "more than two bursts");
        for (int i = 0; i < back.count; ++i) {
            const ImagePosition& p = back.at[static_cast<std::size_t>(i)];
            require(p.line >= -0.5 && p.line <= a.lines - 0.5 && p.pixel >= -0.5 && p.pixel <= a.samples - 0.5,
                    "a position outside the image");
        }
    }
    compareWithGrid(mapping, a);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(static_cast<const char*>(static_cast<const void*>(data)), size);
    attempt([&] {
        Annotation a = parseAnnotation(text);
        useMapping(a, PixelMapping(a, Bistatic::uncorrected));
        const Product product = makeProduct(std::move(a));
        useMapping(product.annotation, product.mapping);
    });
    attempt([&] {
        const OrbitFile file = parseOrbitFile(text);
        require(!file.vectors.empty(), "an orbit file without vectors");
        const OrbitFile files[] = {file, file};
        require(merged(files).vectors.size() == file.vectors.size(), "a file merged with itself grew");
        vectorsAround(file, file.vectors.front().time, file.vectors.back().time);
    });
    return 0;
}
