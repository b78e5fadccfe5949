#include <vorbel/products/Annotation.h>

#include "Constants.h"
#include "Text.h"
#include "Xml.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <optional>
#include <stdexcept>
#include <string>

namespace vorbel::products {
namespace {

/// Each item of a list by a function of its element.
template <class Read>
auto each(const Element& parent, const char* list, const char* item, Read read) {
    std::vector<decltype(read(parent))> records;
    for (const Element& element : parent.list(list, item)) {
        records.push_back(read(element));
    }
    return records;
}

scene::StateVector stateVector(const Element& e) {
    if (const std::string frame = e.textOr("frame", "Earth Fixed"); frame != "Earth Fixed") {
        throw std::runtime_error(e.place("frame") + " is " + shown(frame) + ", not 'Earth Fixed'");
    }
    const Element position = e.at("position");
    const Element velocity = e.at("velocity");
    return {e.time("time"),
            {position.number("x"), position.number("y"), position.number("z"), velocity.number("x"),
             velocity.number("y"), velocity.number("z")}};
}

AttitudeSample attitude(const Element& e) {
    return {e.time("time"), e.text("frame"), e.number("q0"), e.number("q1"),   e.number("q2"),    e.number("q3"),
            e.number("wx"), e.number("wy"),  e.number("wz"), e.number("roll"), e.number("pitch"), e.number("yaw")};
}

DopplerCentroid dopplerCentroid(const Element& e) {
    return {e.time("azimuthTime"), e.number("t0"), e.numbers("geometryDcPolynomial"), e.numbers("dataDcPolynomial")};
}

FrequencyRate frequencyRate(const Element& e) {
    // until 2015 three elements, since then one
    return {e.time("azimuthTime"), e.number("t0"),
            e.has("azimuthFmRatePolynomial") ? e.numbers("azimuthFmRatePolynomial")
                                             : std::vector<double>{e.number("c0"), e.number("c1"), e.number("c2")}};
}

GroundRange groundRange(const Element& e) {
    return {e.time("azimuthTime"), e.number("sr0"), e.number("gr0"), e.numbers("srgrCoefficients"),
            e.numbers("grsrCoefficients")};
}

GridPoint gridPoint(const Element& e) {
    return {e.time("azimuthTime"), e.number("slantRangeTime"), e.number("line"),
            e.number("pixel"),     e.number("latitude"),       e.number("longitude"),
            e.number("height"),    e.number("incidenceAngle"), e.number("elevationAngle")};
}

/// Calls a function with (index, value) of every number of a list that is not negative.
template <class Use>
void eachValid(const std::vector<double>& samples, Use use) {
    for (std::size_t line = 0; line < samples.size(); ++line) {
        if (samples[line] >= 0.0 && samples[line] < std::numeric_limits<int>::max()) {
            use(static_cast<int>(line), static_cast<int>(samples[line]));
        }
    }
}

Burst burst(const Element& e) {
    Burst b{e.time("azimuthTime"), e.time("sensingTime")};
    if (e.has("firstValidSample") && e.has("lastValidSample")) {
        eachValid(e.numbers("firstValidSample"), [&](int line, int sample) {
            b.firstValidLine = b.firstValidLine < 0 ? line : b.firstValidLine;
            b.lastValidLine = line;
            b.firstValidSample = b.firstValidSample < 0 ? sample : std::min(b.firstValidSample, sample);
        });
        eachValid(e.numbers("lastValidSample"),
                  [&](int /*line*/, int sample) { b.lastValidSample = std::max(b.lastValidSample, sample); });
    }
    return b;
}

void readIdentification(const Element& root, Annotation& a) {
    const Element header = root.at("adsHeader");
    a.mission = header.text("missionId");
    a.productType = header.text("productType");
    a.mode = header.text("mode");
    a.swath = header.text("swath");
    a.polarisation = header.text("polarisation");
    a.absoluteOrbit = header.natural("absoluteOrbitNumber");
    a.startTime = header.time("startTime");
    a.stopTime = header.time("stopTime");
}

void readTiming(const Element& root, Annotation& a) {
    const Element image = root.at("imageAnnotation/imageInformation");
    a.firstLineTime = image.time("productFirstLineUtcTime");
    a.lineInterval = image.positive("azimuthTimeInterval");
    a.lines = image.count("numberOfLines");
    a.samples = image.count("numberOfSamples");
    a.slantRangeTime = image.positive("slantRangeTime");
    a.rangePixelSpacing = image.positive("rangePixelSpacing");
    if (root.has("swathTiming")) {
        const Element timing = root.at("swathTiming");
        a.linesPerBurst = timing.natural("linesPerBurst");
        a.bursts = each(timing, "burstList", "burst", burst);
    }
    if (root.has("coordinateConversion")) {
        a.groundRange =
            each(root.at("coordinateConversion"), "coordinateConversionList", "coordinateConversion", groundRange);
    }
}

void readRadar(const Element& root, Annotation& a) {
    const Element general = root.at("generalAnnotation");
    const Element product = general.at("productInformation");
    a.pass = product.text("pass");
    a.rangeSamplingRate = product.positive("rangeSamplingRate");
    a.radarFrequency = product.positive("radarFrequency");
    a.azimuthSteeringRate = product.numberOr("azimuthSteeringRate", 0.0);
    a.kind = product.text("projection") == "Ground Range" ? ImageKind::groundRange
             : a.linesPerBurst > 0                        ? ImageKind::bursts
                                                          : ImageKind::stripmap;
    a.downlinks = each(general, "downlinkInformationList", "downlinkInformation", [](const Element& e) {
        return Downlink{e.text("swath"), e.time("azimuthTime"), e.positive("prf"),
                        e.at("downlinkValues").natural("rank")};
    });
    a.terrainHeights = each(general, "terrainHeightList", "terrainHeight", [](const Element& e) {
        return TerrainHeight{e.time("azimuthTime"), e.number("value")};
    });
    if (root.has("antennaPattern")) {
        a.antennaPatterns =
            each(root.at("antennaPattern"), "antennaPatternList", "antennaPattern", [](const Element& e) {
                return AntennaPattern{e.text("swath"), e.time("azimuthTime"), e.number("roll"),
                                      e.numberOr("terrainHeight", 0.0)};
            });
    }
}

void readProcessing(const Element& root, Annotation& a) {
    const Element processing = root.at("imageAnnotation/processingInformation");
    a.bistaticCorrected = processing.textOr("bistaticDelayCorrectionApplied", "false") == "true";
    a.topsFilterConvention = processing.textOr("topsFilterConvention", "");
    a.orbitSource = processing.textOr("orbitSource", "");
    a.attitudeSource = processing.textOr("attitudeSource", "");
    a.ellipsoidSemiMajorAxis = processing.numberOr("ellipsoidSemiMajorAxis", a.ellipsoidSemiMajorAxis);
    a.ellipsoidSemiMinorAxis = processing.numberOr("ellipsoidSemiMinorAxis", a.ellipsoidSemiMinorAxis);
}

void readGeometry(const Element& root, Annotation& a) {
    const Element general = root.at("generalAnnotation");
    a.vectors = each(general, "orbitList", "orbit", stateVector);
    std::stable_sort(a.vectors.begin(), a.vectors.end(), [](const auto& v, const auto& w) { return v.time < w.time; });
    a.attitude = each(general, "attitudeList", "attitude", attitude);
    a.frequencyRates = each(general, "azimuthFmRateList", "azimuthFmRate", frequencyRate);
    if (root.has("dopplerCentroid")) {
        a.dopplerCentroids = each(root.at("dopplerCentroid"), "dcEstimateList", "dcEstimate", dopplerCentroid);
    }
    if (root.has("geolocationGrid")) {
        a.grid = each(root.at("geolocationGrid"), "geolocationGridPointList", "geolocationGridPoint", gridPoint);
    }
}

/// What no product can be located without.
void requireWhole(const Annotation& a) {
    const auto refuse = [&a](const std::string& what) { throw std::runtime_error(a.source + what); };
    if (a.vectors.size() < 2) {
        refuse(" has " + std::to_string(a.vectors.size()) + " orbit vectors, not two or more");
    }
    if (a.kind == ImageKind::bursts &&
        a.bursts.size() * static_cast<std::size_t>(a.linesPerBurst) != static_cast<std::size_t>(a.lines)) {
        refuse(" has " + std::to_string(a.bursts.size()) + " bursts of " + std::to_string(a.linesPerBurst) +
               " lines, not the " + std::to_string(a.lines) + " lines of its image");
    }
    if (a.kind == ImageKind::groundRange && a.groundRange.empty()) {
        refuse(" is in ground range, but has no polynomials from ground range to slant range");
    }
}

}  // namespace

double wavelength(const Annotation& annotation) noexcept {
    return kSpeedOfLight / annotation.radarFrequency;
}

Annotation readAnnotation(const std::filesystem::path& file) {
    return parseAnnotation(readFile(file), file.string());
}

Annotation parseAnnotation(std::string_view text, std::string_view source) {
    const Document document(text, std::string(source));
    const Element root = document.root("product", "annotation file of a Sentinel-1 product");
    Annotation a;
    a.source = source;
    readIdentification(root, a);
    readTiming(root, a);
    readRadar(root, a);
    readProcessing(root, a);
    readGeometry(root, a);
    requireWhole(a);
    return a;
}

}  // namespace vorbel::products
