// The command `vorbel`: from a product file to an answer.

#include "Commands.h"
#include "Progress.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cstdio>
#include <exception>
#include <string>

namespace {

using namespace vorbel;

constexpr int kBadData = 1;
constexpr int kBadCall = 2;

/// What the options of all commands say.
struct Call {
    tool::ProductChoice choice;
    bool json = false;
    bool lineTimes = false;
    std::optional<double> height;
    std::filesystem::path terrain;
    std::filesystem::path geoid;
    std::optional<double> line, pixel, latitude, longitude, ut1MinusUtc;
    std::vector<int> steps;
    bool bursts = false;

    tool::Form form() const {
        return json ? tool::Form::json : tool::Form::text;
    }
    products::Product product() const {
        return tool::open(choice, choice.files.front());
    }
    tool::Surface surface() const {
        if (!terrain.empty()) {
            return tool::readTerrain(terrain, geoid);
        }
        tool::Surface flat;
        flat.height = height.value_or(0.0);
        return flat;
    }
};

CLI::App* addCommand(CLI::App& app, Call& call, const char* name, const char* description, const char* example,
                     bool severalProducts = false) {
    CLI::App* const command = app.add_subcommand(name, description);
    command->footer(std::string("Example:\n  ") + example);
    command
        ->add_option("PRODUCT", call.choice.files,
                     severalProducts ? "annotation files (XML) of Sentinel-1 products"
                                     : "annotation file (XML) of a Sentinel-1 product")
        ->required()
        ->expected(1, severalProducts ? 1 << 20 : 1);
    command
        ->add_option("--orbit", call.choice.orbits,
                     "orbit file, or table of state vectors, instead of the product's own vectors; may be repeated, "
                     "the first counts where several cover a time")
        ->expected(1)
        ->take_all();
    command->add_flag("--line-times", call.lineTimes,
                      "leave out the correction of a line's time for the delay between sending and receiving");
    return command;
}

void addJson(CLI::App* command, Call& call) {
    command->add_flag("--json", call.json, "answer in JSON");
}

CLI::Option* addHeight(CLI::App* command, Call& call, const char* description) {
    return command->add_option("--height", call.height, description)->check(CLI::Range(-12000.0, 12000.0));
}

void addSurface(CLI::App* command, Call& call) {
    CLI::Option* const height =
        addHeight(command, call, "height of the ground in m above the ellipsoid WGS 84, not above sea level (0)");
    CLI::Option* const terrain =
        command
            ->add_option("--terrain", call.terrain,
                         "terrain instead: a GeoTIFF of heights in m above the ellipsoid, in longitude and latitude")
            ->excludes(height);
    command
        ->add_option("--geoid", call.geoid,
                     "the terrain's heights are above the geoid; this GeoTIFF has the geoid's above the ellipsoid")
        ->needs(terrain);
}

constexpr const char* kOneOrTable = "wants both or neither; with neither it reads a table from standard input";

/// One line for what is wrong with a call.
int badCall(const std::string& message) {
    std::string line = message;
    std::replace(line.begin(), line.end(), '\n', ' ');
    std::fprintf(stderr, "vorbel: %s; vorbel --help says more\n", line.c_str());
    return kBadCall;
}

/// What is wrong with a call. The parser itself takes the value of an unknown option for one product more, and an
/// unknown command for none.
std::string complaint(const CLI::App& app, const CLI::ParseError& error) {
    for (const std::string& left : app.remaining(true)) {
        if (left.starts_with('-')) {
            return "there is no option " + left;
        }
        if (app.get_subcommands().empty()) {
            return "there is no command " + left;
        }
    }
    return error.what();
}

/// A point by two options, or a table.
enum class Input { one, table };
Input inputOf(const std::optional<double>& a, const std::optional<double>& b, const char* names, bool json) {
    if (a.has_value() != b.has_value()) {
        throw CLI::ValidationError(names, kOneOrTable);
    }
    if (a) {
        return Input::one;
    }
    if (json) {
        throw CLI::ValidationError("--json", std::string("answers for one point; it wants ") + names);
    }
    if (tool::isTerminal(stdin)) {
        throw CLI::ValidationError(names, kOneOrTable);
    }
    return Input::table;
}

void run(const CLI::App& app, Call& call) {
    call.choice.bistatic = call.lineTimes ? products::Bistatic::uncorrected : products::Bistatic::corrected;
    const std::string name = app.get_subcommands().front()->get_name();
    if (name == "info") {
        tool::info(call.choice, call.form());
    } else if (name == "footprint") {
        tool::footprint(call.choice, call.bursts, call.height);
    } else if (name == "doppler") {
        tool::doppler(call.product(), call.height.value_or(0.0), call.ut1MinusUtc, call.form());
    } else if (name == "grid") {
        tool::grid(call.product(), call.surface(), {call.steps.front(), call.steps.back()});
    } else if (name == "locate") {
        if (inputOf(call.line, call.pixel, "--line and --pixel", call.json) == Input::one) {
            tool::locate(call.product(), call.surface(), {*call.line, *call.pixel}, call.form());
        } else {
            tool::locateTable(call.product(), call.surface());
        }
    } else if (name == "project") {
        if (inputOf(call.latitude, call.longitude, "--lat and --lon", call.json) == Input::one) {
            tool::project(call.product(), call.surface(), {*call.latitude, *call.longitude}, call.form());
        } else {
            tool::projectTable(call.product(), call.surface());
        }
    }
}

void describe(CLI::App& app, Call& call) {
    app.set_version_flag("--version", "vorbel " VORBEL_VERSION);
    app.require_subcommand(1);
    app.footer(
        "Each command has its own --help, with an example. 'vorbel locate s1a-iw1-slc.xml --line 500 --pixel 1200'\n"
        "says where a pixel is.\nExit code: 0 answered, 1 something is wrong with the data, 2 with the call.");

    CLI::App* command = addCommand(app, call, "info", "What products are, and how well they agree with themselves",
                                   "vorbel info s1a-iw1-slc.xml s1a-iw2-slc.xml", true);
    addJson(command, call);

    command = addCommand(app, call, "locate", "Where pixels are on the ground",
                         "vorbel locate s1a-iw1-slc.xml --line 500 --pixel 1200 --height 35\n"
                         "  vorbel locate s1a-iw1-slc.xml < pixels.csv > points.csv\n"
                         "The table has columns line and pixel, optionally height, and any others.");
    command->add_option("--line", call.line, "line of the image, counted from 0; centres are whole numbers");
    command->add_option("--pixel", call.pixel, "pixel of the line, counted from 0");
    addSurface(command, call);
    addJson(command, call);

    command = addCommand(app, call, "project", "At which pixels ground points appear",
                         "vorbel project s1a-iw1-slc.xml --lat 50.084353 --lon -61.359589 --height 0\n"
                         "  vorbel project s1a-iw1-slc.xml < points.csv > pixels.csv\n"
                         "The table has columns latitude and longitude, optionally height, and any others.");
    command->add_option("--lat", call.latitude, "geodetic latitude, degrees");
    command->add_option("--lon", call.longitude, "longitude, degrees east");
    addSurface(command, call);
    addJson(command, call);

    command = addCommand(app, call, "grid", "A grid of ground points with their angles, as CSV",
                         "vorbel grid s1a-iw1-slc.xml --step 500 1000 > grid.csv");
    command->add_option("--step", call.steps, "lines, and pixels if they differ, from one point to the next")
        ->required()
        ->expected(1, 2)
        ->check(CLI::PositiveNumber);
    addSurface(command, call);

    command = addCommand(app, call, "footprint", "Outlines of products, or of their bursts, as GeoJSON",
                         "vorbel footprint s1a-iw1-slc.xml s1a-iw2-slc.xml > footprint.geojson", true);
    command->add_flag("--bursts", call.bursts, "the outline of each burst, of what is valid of it");
    addHeight(command, call, "height of the ground in m above the ellipsoid (those of the product's own grid)");

    command = addCommand(app, call, "doppler",
                         "The Doppler centroid from orbit and attitude, beside the product's own, as CSV",
                         "vorbel doppler s1a-iw1-slc.xml");
    addHeight(command, call, "height of the ground in m above the ellipsoid (0)");
    command->add_option("--ut1-utc", call.ut1MinusUtc, "UT1 - UTC in s (from a table of the years 2014 to 2026)")
        ->check(CLI::Range(-1.0, 1.0));
    addJson(command, call);
}

}  // namespace

int main(int argc, char** argv) {
    try {
        CLI::App app{"Geometry of satellite radar products", "vorbel"};
        Call call;
        describe(app, call);
        try {
            app.parse(argc, argv);
            run(app, call);
        } catch (const CLI::ParseError& error) {
            return error.get_exit_code() == 0 ? app.exit(error) : badCall(complaint(app, error));
        }
        if (std::fflush(stdout) != 0) {
            throw std::runtime_error("the output cannot be written");
        }
    } catch (const std::bad_alloc&) {
        std::fputs("vorbel: not enough memory\n", stderr);
        return kBadData;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "vorbel: %s\n", error.what());
        return kBadData;
    }
    return 0;
}
