// The module ZR_Test.arx of the module tests. It counts how often it is mapped and unmapped in environment
// variables, which outlive it.

#include <cstdlib>
#include <string>

namespace {

void note(const char* name) {
    const char* before = std::getenv(name);
    setenv(name, (std::string(before != nullptr ? before : "") + "x").c_str(), 1);
}

const struct Mapping {
    Mapping() { note("ZR_TEST_MAPPED"); }
    ~Mapping() { note("ZR_TEST_UNMAPPED"); }
} kMapping;

}  // namespace

extern "C" __attribute__((visibility("default"))) int zrTestAnswer() {
    return 42;
}
