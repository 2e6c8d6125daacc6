// A module with an undefined symbol.
extern "C" int zrNobodyHasThis();
extern "C" __attribute__((visibility("default"))) int zrNeedy() {
    return zrNobodyHasThis();
}
