// The command `vorbel`: from a product file to an answer.

#include <CLI/CLI.hpp>

int main(int argc, char** argv) {
    CLI::App app{"Geometry of satellite radar products", "vorbel"};
    app.set_version_flag("--version", "vorbel " VORBEL_VERSION);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? 0 : 2;
    }
    return 0;
}
