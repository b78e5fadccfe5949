// Every operation of the class. With --portable: ordinary inputs without drag, for which every platform must return the
// same bits of those operations that take no function of the C library.

#include "Report.h"

#include "../AllOperations.h"

namespace {

constexpr std::uint64_t kRegularCases = 1500;
constexpr std::uint64_t kEdgeCases = 1500;

void evaluate(Values& values, const Case& inputs) {
    CVorbel object;
    AllOperations(object, inputs, values).run();
}

std::vector<Operation> evaluateAll(bool portable) {
    Values values;
    for (std::uint64_t i = 0; i < kRegularCases; ++i) {
        Case inputs = regularCase(i);
        if (portable) {
            inputs.state.drag = 0.0;
        }
        evaluate(values, inputs);
    }
    values.setSuffix("/edge");
    for (std::uint64_t i = 0; i < kEdgeCases && !portable; ++i) {
        evaluate(values, edgeCase(i));
    }
    return values.operations();
}

}  // namespace

int main(int argc, char** argv) {
    return reportBits(argc, argv, "vorbel_bits", evaluateAll);
}
